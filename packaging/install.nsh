; Installation over nothing or over an older one. First all is looked at, then all new files are brought in below WORK; only
; then they take the places of the old ones, which come back where that or the registration fails. What goes wrong behind
; that is told, and the status says so: the add-in works by then.

Var Incomplete  ; 1: something behind the programs couldn't be done
Var List        ; a list that is being written

!macro note TEXT
  StrCpy $Incomplete 1
  ${Log} "warning: ${TEXT}"
!macroend
!define Note "!insertmacro note"

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
  !insertmacro each_listed "" CheckListedFree "${LIST}"
FunctionEnd

; An old program comes back, in the place of the new one where there is one.
Function PutProgramBack
  Pop $0
  ${If} ${FileExists} "$INSTDIR\${WORK}\outgoing\$0"
    Delete "$INSTDIR\$0"
    Rename "$INSTDIR\${WORK}\outgoing\$0" "$INSTDIR\$0"
  ${EndIf}
FunctionEnd

; What a setup that was interrupted has left. A folder that is called so and has no list is somebody's.
Function MendInterrupted
  !insertmacro each_listed "" PutProgramBack "${WORK}\${LIST}"
  Call DropWork
  RMDir "$INSTDIR\${WORK}"
  ${If} ${FileExists} "$INSTDIR\${WORK}\*.*"
    ${Fail} ${NOT_WRITTEN} "$INSTDIR\${WORK} holds what isn't setup's, which needs that folder for itself. Move it away. \
      Nothing has been changed."
  ${EndIf}
FunctionEnd

Function ListName
  Pop $0
  FileWrite $List "$0$\r$\n"
FunctionEnd

; The list comes first: it tells what of the rest is setup's.
Function BringIncoming
  CreateDirectory "$INSTDIR\${WORK}"
  ClearErrors
  FileOpen $List "$INSTDIR\${WORK}\${LIST}" w
  !insertmacro for_chosen each_program ListName
  !insertmacro for_chosen each_text ListName
  !insertmacro each_document ListName
  FileClose $List
  SetOverwrite try
  ${If} $Width != 32
    !insertmacro bring_win64
  ${EndIf}
  ${If} $Width != 64
    !insertmacro bring_win32
  ${EndIf}
  !insertmacro bring_documents
  ${If} ${Errors}
    Call DropWork
    ${Fail} ${NOT_WRITTEN} "The files can't be written into $INSTDIR. Check its rights and the space there. Nothing that \
      was installed has been changed."
  ${EndIf}
  SetOutPath $TEMP
FunctionEnd

Function MakeFolders
  Pop $0
  CreateDirectory "$INSTDIR\$0\Bitmaps"
  CreateDirectory "$INSTDIR\original\$0\Bitmaps"
  CreateDirectory "$INSTDIR\${WORK}\outgoing\$0"
FunctionEnd

Function PutProgram
  Pop $0
  ClearErrors
  ${If} ${FileExists} "$INSTDIR\$0"
    Rename "$INSTDIR\$0" "$INSTDIR\${WORK}\outgoing\$0"
  ${EndIf}
  ${IfNot} ${Errors}
    Rename "$INSTDIR\${WORK}\incoming\$0" "$INSTDIR\$0"
  ${EndIf}
  ${If} ${Errors}
    StrCpy $Failed 1
  ${EndIf}
FunctionEnd

; A new program in a place where none was.
Function DropNewProgram
  Pop $0
  ${IfNot} ${FileExists} "$INSTDIR\${WORK}\incoming\$0"
  ${AndIfNot} ${FileExists} "$INSTDIR\${WORK}\outgoing\$0"
    Delete "$INSTDIR\$0"
  ${EndIf}
FunctionEnd

Function DropFolders
  Pop $0
  RMDir "$INSTDIR\$0\Bitmaps"
  RMDir "$INSTDIR\$0"
  RMDir "$INSTDIR\original\$0\Bitmaps"
  RMDir "$INSTDIR\original\$0"
  RMDir "$INSTDIR\original"
FunctionEnd

Function GoBack
  !insertmacro for_chosen each_program DropNewProgram
  !insertmacro for_chosen each_program PutProgramBack
  !insertmacro for_chosen once DropFolders
FunctionEnd

; Taking a DLL out takes what both widths share, so each that is there enters itself again.
Function EnterAll
  !insertmacro once EnterAgain win32
  !insertmacro once EnterAgain win64
FunctionEnd

Function PutPrograms
  StrCpy $Failed 0
  !insertmacro for_chosen once MakeFolders
  !insertmacro for_chosen each_program PutProgram
  ${If} $Failed != 0
    Call GoBack
    Call DropWork
    ${Fail} ${NOT_WRITTEN} "The programs in $INSTDIR can't be replaced. Close all that uses the folder, check its rights, \
      then try again. What was installed is as before."
  ${EndIf}
  !insertmacro for_chosen once EnterAgain
  ${If} $Failed != 0
    !insertmacro for_chosen once TakeOut  ; as long as there is a DLL that can do it
    Call GoBack
    Call EnterAll
    Call DropWork
    !insertmacro drop_made_keys
    ${Fail} ${NOT_REGISTERED} "The add-in can't enter itself into the registry; the log has the status of regsvr32. Check \
      that nothing guards Software\Classes there. What was installed is as before."
  ${EndIf}
FunctionEnd

; A file of ours takes the place of an older one.
!macro put FROM TO
  ClearErrors
  Delete "${TO}"
  Rename "${FROM}" "${TO}"
  ${If} ${Errors}
    ${Note} "${TO} can't be written; the old one stays."
  ${EndIf}
!macroend

; Settings, texts and pictures: one that somebody has edited stays, and the new one lies beside it where it differs from
; what came before. Edited is what differs from the copy that was kept at installation.
Function PutText
  Pop $6
  StrCpy $7 "$INSTDIR\$6"
  StrCpy $8 "$INSTDIR\${WORK}\incoming\$6"
  StrCpy $9 "$INSTDIR\original\$6"
  Push "$8"
  !insertmacro call "" AreSame "$9"
  StrCpy $R5 $R0  ; 1: it brings nothing new
  Push "$7"
  !insertmacro call "" AreSame "$9"
  ${If} $R0 == 1
  ${OrIfNot} ${FileExists} "$7"
    Call ReplaceText
  ${Else}
    Call KeepText
  ${EndIf}
  ${If} $R5 == 0
    !insertmacro put "$8" "$9"
  ${EndIf}
FunctionEnd

!macro copy FROM TO
  System::Call 'kernel32::CopyFileW(w "${FROM}", w "${TO}", i 0) i .r0'
  ${If} $0 == 0
    ${Note} "${TO} can't be written."
  ${EndIf}
!macroend
; $R0 is 1 where what lies beside a text is none of ours: ours is the copy that was kept.
!macro is_strange FILE
  StrCpy $R0 0
  ${If} ${FileExists} "${FILE}"
    Push "${FILE}"
    !insertmacro call "" AreSame "$9"
    IntOp $R0 1 - $R0
  ${EndIf}
!macroend

Function ReplaceText
  !insertmacro is_strange "$7.new"
  ${If} $R0 == 0
    Delete "$7.new"
  ${EndIf}
  !insertmacro copy "$8" "$7"
FunctionEnd

Function KeepText
  !insertmacro is_strange "$7.new"
  StrCpy $R6 $R0
  Push "$7"
  !insertmacro call "" AreSame "$8"
  ${If} $R0 == 1  ; somebody has edited it into what comes now
    ${If} $R6 == 0
      Delete "$7.new"
    ${EndIf}
  ${ElseIf} $R5 == 1
    ${Log} "$7 was edited and stays."
  ${ElseIf} $R6 == 1
    ${Log} "$7 was edited and stays; so does $7.new, which isn't setup's. The new one is $9."
  ${Else}
    ${Log} "$7 was edited and stays; the new one is $7.new."
    !insertmacro copy "$8" "$7.new"
  ${EndIf}
FunctionEnd

Function PutDocument
  Pop $0
  !insertmacro put "$INSTDIR\${WORK}\incoming\$0" "$INSTDIR\$0"
FunctionEnd
