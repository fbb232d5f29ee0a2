; Installation over nothing or over an older one. First all is looked at, then all new files are brought into the folder
; `incoming`; only then they take the places of the old ones, which come back where that or the registration fails.

Var Failed

; FUNCTION for each program of the widths that are chosen; widths are called win64 and win32.
!macro for_chosen EACH FUNCTION
  ${If} $Width != 32
    !insertmacro ${EACH} ${FUNCTION} win64
  ${EndIf}
  ${If} $Width != 64
    !insertmacro ${EACH} ${FUNCTION} win32
  ${EndIf}
!macroend
!macro once FUNCTION WIDTH
  Push ${WIDTH}
  Call ${FUNCTION}
!macroend

Function CheckSystem
  ${If} $Width != 64
  ${AndIfNot} ${FileExists} "$WINDIR\SysWOW64\regsvr32.exe"
    ${Fail} ${NOT_REGISTERED} "This Windows can't load libraries of 32 bits: it has no SysWOW64\regsvr32.exe. Give \
      /Width=64. Nothing has been changed."
  ${EndIf}
  !insertmacro each_program CheckFree win64
  !insertmacro each_program CheckFree win32
  Push uninstall.exe
  Call CheckFree
FunctionEnd

Function DropIncoming
  SetOutPath $TEMP  ; a current folder couldn't go
  RMDir /r "$INSTDIR\incoming"
  RMDir "$INSTDIR"
FunctionEnd

Function BringIncoming
  RMDir /r "$INSTDIR\incoming"
  SetOverwrite try
  ClearErrors
  ${If} $Width != 32
    !insertmacro bring_win64
  ${EndIf}
  ${If} $Width != 64
    !insertmacro bring_win32
  ${EndIf}
  !insertmacro bring_documents
  ${If} ${Errors}
    Call DropIncoming
    ${Fail} ${NOT_WRITTEN} "The files can't be written into $INSTDIR. Check its rights and the space there. Nothing that \
      was installed has been changed."
  ${EndIf}
  SetOutPath $TEMP
FunctionEnd

Function PutProgram
  Pop $0
  ClearErrors
  Delete "$INSTDIR\$0.old"
  ${If} ${FileExists} "$INSTDIR\$0"
    Rename "$INSTDIR\$0" "$INSTDIR\$0.old"
  ${EndIf}
  ${IfNot} ${Errors}
    Rename "$INSTDIR\incoming\$0" "$INSTDIR\$0"
  ${EndIf}
  ${If} ${Errors}
    StrCpy $Failed 1
  ${EndIf}
FunctionEnd

Function PutProgramBack
  Pop $0
  ${IfNot} ${FileExists} "$INSTDIR\incoming\$0"
    Delete "$INSTDIR\$0"
  ${EndIf}
  ${If} ${FileExists} "$INSTDIR\$0.old"
    Delete "$INSTDIR\$0"
    Rename "$INSTDIR\$0.old" "$INSTDIR\$0"
  ${EndIf}
FunctionEnd

Function DropOldProgram
  Pop $0
  Delete "$INSTDIR\$0.old"
FunctionEnd

Function MakeFolders
  Pop $0
  CreateDirectory "$INSTDIR\$0\Bitmaps"
  CreateDirectory "$INSTDIR\original\$0\Bitmaps"
FunctionEnd

Function DropFolders
  Pop $0
  RMDir "$INSTDIR\$0\Bitmaps"
  RMDir "$INSTDIR\$0"
  RMDir "$INSTDIR\original\$0\Bitmaps"
  RMDir "$INSTDIR\original\$0"
  RMDir "$INSTDIR\original"
FunctionEnd

Function Enter
  Pop $7
  Push $7
  Push ""
  Call Register
  ${If} $R0 != 0
    StrCpy $Failed $R0
  ${EndIf}
FunctionEnd

Function TakeOut
  Pop $7
  Push $7
  Push "/u"
  Call Register
FunctionEnd

Function EnterAgain
  Pop $7
  ${If} ${FileExists} "$INSTDIR\$7\QVEsprit.dll"
    Push $7
    Push ""
    Call Register
  ${EndIf}
FunctionEnd

Function PutPrograms
  StrCpy $Failed 0
  !insertmacro for_chosen once MakeFolders
  !insertmacro for_chosen each_program PutProgram
  ${If} $Failed != 0
    !insertmacro for_chosen each_program PutProgramBack
    !insertmacro for_chosen once DropFolders
    Call DropIncoming
    ${Fail} ${NOT_WRITTEN} "The programs in $INSTDIR can't be replaced. Close all that uses the folder, check its rights, \
      then try again. What was installed is as before."
  ${EndIf}
  !insertmacro for_chosen once Enter
  ${If} $Failed != 0
    !insertmacro for_chosen once TakeOut  ; as long as there is a DLL that can do it
    !insertmacro for_chosen each_program PutProgramBack
    !insertmacro for_chosen once EnterAgain
    !insertmacro for_chosen once DropFolders
    Call DropIncoming
    ${Fail} ${NOT_REGISTERED} "The add-in can't enter itself into the registry (regsvr32: $Failed). Check that nothing \
      guards Software\Classes there. What was installed is as before."
  ${EndIf}
  !insertmacro for_chosen each_program DropOldProgram
FunctionEnd

; Settings, texts and pictures: one that somebody has edited stays, and the new one lies beside it. Edited is what differs
; from the copy that was kept at installation.
Function PutText
  Pop $6
  StrCpy $7 "$INSTDIR\$6"
  StrCpy $8 "$INSTDIR\incoming\$6"
  StrCpy $9 "$INSTDIR\original\$6"
  Delete "$7.new"
  Push "$7"
  Push "$9"
  Call AreSame
  ${If} $R0 == 0
  ${AndIf} ${FileExists} "$7"
    Push "$7"
    Push "$8"
    Call AreSame
  ${Else}
    StrCpy $R0 1
  ${EndIf}
  ${If} $R0 == 1
    ClearErrors
    CopyFiles /SILENT /FILESONLY "$8" "$7"
    ${If} ${Errors}
      StrCpy $R0 0
    ${EndIf}
  ${EndIf}
  ${If} $R0 == 0
    CopyFiles /SILENT /FILESONLY "$8" "$7.new"
    ${Log} "$7 was edited and stays; the new one is $7.new."
  ${EndIf}
  Delete "$9"
  Rename "$8" "$9"
FunctionEnd

Function PutDocument
  Pop $0
  Delete "$INSTDIR\$0"
  Rename "$INSTDIR\incoming\$0" "$INSTDIR\$0"
FunctionEnd

; A width that isn't wanted any longer goes. Both share some of their entries, so what stays enters itself again.
Function DropOtherWidth
  StrCpy $8 ""
  ${If} $Width == 64
    StrCpy $8 win32
  ${ElseIf} $Width == 32
    StrCpy $8 win64
  ${EndIf}
  ${If} $8 != ""
  ${AndIf} ${FileExists} "$INSTDIR\$8\QVEsprit.dll"
    Push $8
    Call RemoveWidth
    !insertmacro for_chosen once Enter
  ${EndIf}
FunctionEnd

Function WriteEntry
  WriteRegStr SHCTX "${ENTRY}" DisplayName "QVEsprit"
  WriteRegStr SHCTX "${ENTRY}" DisplayVersion "${VERSION}"
  WriteRegStr SHCTX "${ENTRY}" Publisher "${PUBLISHER}"
  WriteRegStr SHCTX "${ENTRY}" DisplayIcon "$INSTDIR\uninstall.exe"
  WriteRegStr SHCTX "${ENTRY}" InstallLocation "$INSTDIR"
  WriteRegStr SHCTX "${ENTRY}" UninstallString '"$INSTDIR\uninstall.exe"'
  WriteRegStr SHCTX "${ENTRY}" QuietUninstallString '"$INSTDIR\uninstall.exe" /S'
  WriteRegDWORD SHCTX "${ENTRY}" NoModify 1
  WriteRegDWORD SHCTX "${ENTRY}" NoRepair 1
  ${GetSize} "$INSTDIR" "/S=0K" $0 $1 $2
  WriteRegDWORD SHCTX "${ENTRY}" EstimatedSize $0
FunctionEnd

Function Install
  Call CheckSystem
  Call BringIncoming
  Call PutPrograms
  !insertmacro for_chosen each_text PutText
  CreateDirectory "$INSTDIR\docs"
  !insertmacro each_document PutDocument
  Call DropIncoming
  Call DropOtherWidth
  WriteUninstaller "$INSTDIR\uninstall.exe"
  Call WriteEntry
  !insertmacro each_variable set_variable
  !insertmacro tell_programs
  ${Log} "QVEsprit ${VERSION} is installed in $INSTDIR."
  SetErrorLevel 0
FunctionEnd

; A file couldn't be written to its end.
Function .onInstFailed
  Call DropIncoming
  ${Fail} ${NOT_WRITTEN} "The files couldn't be written to their end in $INSTDIR. Check the space there. Nothing that was \
    installed has been changed."
FunctionEnd
