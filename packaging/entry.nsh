; The entry in the system's list of programs, where else QVEsprit is installed, and the whole of an installation.

; Which keys a user hasn't had before the first installation.
!macro look_for_key BIT KEY
  ClearErrors
  EnumRegKey $0 HKCU "${KEY}" 0
  ${If} ${Errors}
    IntOp $MadeKeys $MadeKeys | ${BIT}
  ${EndIf}
!macroend
Function LookForKeys
  StrCpy $MadeKeys 0
  ReadRegStr $0 SHCTX "${ENTRY}" InstallLocation
  ${If} $0 != ""
    ReadRegDWORD $MadeKeys SHCTX "${ENTRY}" MadeKeys
  ${ElseIf} $AllUsers == 0
    !insertmacro each_shared_key look_for_key
  ${EndIf}
  ClearErrors
FunctionEnd

; Nothing may be installed in two folders by one entry, or by two entries in one.
Function CheckFolder
  ReadRegStr $0 SHCTX "${ENTRY}" InstallLocation
  ${If} $0 != ""
  ${AndIf} $0 != $INSTDIR
  ${AndIf} ${FileExists} "$0\uninstall.exe"
    ${Fail} ${WRONG_OPTION} "QVEsprit is installed in $0 already. Remove it there before you install it in $INSTDIR, or \
      leave the folder as it is. Nothing has been changed."
  ${EndIf}
  StrCpy $1 "for all users"
  ReadRegStr $0 HKLM "${ENTRY}" InstallLocation
  ${If} $AllUsers == 1
    StrCpy $1 "for the user who runs setup"
    ReadRegStr $0 HKCU "${ENTRY}" InstallLocation
  ${EndIf}
  ${If} $0 == $INSTDIR
    ${Fail} ${WRONG_OPTION} "QVEsprit is installed $1 in $INSTDIR. Give another folder, or remove it there first. Nothing \
      has been changed."
  ${ElseIf} $0 != ""
    ${Log} "note: QVEsprit is installed $1, too, in $0. A user's own installation comes before the one for all users."
  ${EndIf}
  ClearErrors
FunctionEnd

Var Size  ; of what was put, in bytes
Function AddSize
  Pop $0
  FileOpen $1 "$INSTDIR\$0" r
  ${If} $1 != ""
    FileSeek $1 0 END $2
    FileClose $1
    IntOp $Size $Size + $2
  ${EndIf}
FunctionEnd

Function WriteEntry
  StrCpy $Size 0
  !insertmacro each_listed "" AddSize "${LIST}"
  IntOp $Size $Size / 1024
  ClearErrors
  WriteUninstaller "$INSTDIR\uninstall.exe"
  ${If} ${Errors}
    ${Note} "$INSTDIR\uninstall.exe can't be written."
  ${EndIf}
  WriteRegStr SHCTX "${ENTRY}" DisplayName "QVEsprit"
  WriteRegStr SHCTX "${ENTRY}" DisplayVersion "${VERSION}"
  WriteRegStr SHCTX "${ENTRY}" Publisher "${PUBLISHER}"
  WriteRegStr SHCTX "${ENTRY}" DisplayIcon "$INSTDIR\uninstall.exe"
  WriteRegStr SHCTX "${ENTRY}" InstallLocation "$INSTDIR"
  WriteRegStr SHCTX "${ENTRY}" UninstallString '"$INSTDIR\uninstall.exe"'
  WriteRegStr SHCTX "${ENTRY}" QuietUninstallString '"$INSTDIR\uninstall.exe" /S'
  WriteRegDWORD SHCTX "${ENTRY}" NoModify 1
  WriteRegDWORD SHCTX "${ENTRY}" NoRepair 1
  WriteRegDWORD SHCTX "${ENTRY}" EstimatedSize $Size
  WriteRegDWORD SHCTX "${ENTRY}" MadeKeys $MadeKeys
  ${If} ${Errors}
    ${Note} "The entry in the list of programs can't be written."
  ${EndIf}
FunctionEnd

Function Install
  StrCpy $Incomplete 0
  Call CheckFolder
  Call CheckSystem
  Call MendInterrupted
  Call LookForKeys
  Call BringIncoming
  Call PutPrograms
  Call DropOld
  !insertmacro for_chosen each_text PutText
  CreateDirectory "$INSTDIR\docs"
  !insertmacro each_document PutDocument
  Call DropWork
  Call WriteEntry
  !insertmacro each_variable set_variable
  !insertmacro tell_programs
  ${If} $Incomplete == 1
    ${Fail} ${INCOMPLETE} "QVEsprit ${VERSION} is installed in $INSTDIR, but not all of it: the log tells what, \
      $LogFile. Mend that, then run setup again."
  ${EndIf}
  ${Log} "QVEsprit ${VERSION} is installed in $INSTDIR."
  SetErrorLevel 0
FunctionEnd

; A file couldn't be written to its end.
Function .onInstFailed
  Call DropWork
  ${Fail} ${NOT_WRITTEN} "The files couldn't be written to their end in $INSTDIR. Check the space there. Nothing that was \
    installed has been changed."
FunctionEnd
