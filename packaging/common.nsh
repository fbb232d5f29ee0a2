; What installation and removal share: UN is empty or "un.".

!macro fail UN STATUS TEXT
  Push "${STATUS}"
  Push "${TEXT}"
  Call ${UN}Fail
!macroend
!define Fail "!insertmacro fail ''"
!define un.Fail "!insertmacro fail 'un.'"
!macro log UN TEXT
  Push "${TEXT}"
  Call ${UN}Log
!macroend
!define Log "!insertmacro log ''"
!define un.Log "!insertmacro log 'un.'"

!macro common_functions UN
; A text goes into the log, and to where a silent run's output goes or onto the page.
Function ${UN}Log
  Exch $R9
  Push $R8
  FileOpen $R8 "$LogFile" a
  ${If} $R8 != ""
    FileSeek $R8 0 END
    FileWrite $R8 "$R9$\r$\n"
    FileClose $R8
  ${EndIf}
  ${If} ${Silent}
    System::Call 'kernel32::GetStdHandle(i -11) p .R8'
    ${If} $R8 <> 0
    ${AndIf} $R8 <> -1
      FileWrite $R8 "$R9$\r$\n"
    ${EndIf}
  ${Else}
    SetDetailsPrint both
    DetailPrint "$R9"
    SetDetailsPrint none
  ${EndIf}
  ClearErrors
  Pop $R8
  Pop $R9
FunctionEnd

; Ends with a status and a text.
Function ${UN}Fail
  Pop $1
  Pop $0
  !insertmacro log "${UN}" "error: $1"
  MessageBox MB_OK|MB_ICONSTOP "$1" /SD IDOK
  SetErrorLevel $0
  Quit
FunctionEnd

; $R0 is 1 where two files hold the same.
Function ${UN}AreSame
  Pop $1
  Pop $0
  StrCpy $R0 0
  FileOpen $2 "$0" r
  FileOpen $3 "$1" r
  ${If} $2 != ""
  ${AndIf} $3 != ""
    ${Do}
      ClearErrors
      FileReadByte $2 $4
      ${If} ${Errors}
        StrCpy $4 "end"
      ${EndIf}
      ClearErrors
      FileReadByte $3 $5
      ${If} ${Errors}
        StrCpy $5 "end"
      ${EndIf}
      ${If} $4 != $5
        ${ExitDo}
      ${ElseIf} $4 == "end"
        StrCpy $R0 1
        ${ExitDo}
      ${EndIf}
    ${Loop}
  ${EndIf}
  ${If} $2 != ""
    FileClose $2
  ${EndIf}
  ${If} $3 != ""
    FileClose $3
  ${EndIf}
  ClearErrors
FunctionEnd

; Ends where a program or library, named below the folder, is in use: such a file can't be opened for writing.
Function ${UN}CheckFree
  Pop $0
  ${If} ${FileExists} "$INSTDIR\$0"
    SetFileAttributes "$INSTDIR\$0" NORMAL
    ClearErrors
    FileOpen $1 "$INSTDIR\$0" a
    ${If} ${Errors}
      !insertmacro fail "${UN}" ${IN_USE} "$INSTDIR\$0 is in use or write-protected. Close the CAM host and \
        deskhost for all users of this machine, then try again. Nothing has been changed."
    ${EndIf}
    FileClose $1
  ${EndIf}
FunctionEnd

; Lets the DLL of a width (win64, win32) enter itself, or take itself out with "/u"; $R0 is 0 where it did.
Function ${UN}Register
  Pop $1
  Pop $0
  StrCpy $2 "$SYSDIR\regsvr32.exe"
  ${If} $0 == "win32"
    StrCpy $2 "$WINDIR\SysWOW64\regsvr32.exe"
  ${EndIf}
  StrCpy $3 ""
  ${If} $AllUsers != 1
    StrCpy $3 "/n /i:user"
  ${EndIf}
  StrCpy $R0 -1
  ExecWait '"$2" /s $1 $3 "$INSTDIR\$0\QVEsprit.dll"' $R0
  ClearErrors
FunctionEnd

Function ${UN}RemoveFile
  Pop $0
  Delete "$INSTDIR\$0"
FunctionEnd

; A text goes unless somebody has edited it.
Function ${UN}RemoveText
  Pop $6
  Delete "$INSTDIR\$6.new"
  Push "$INSTDIR\$6"
  Push "$INSTDIR\original\$6"
  Call ${UN}AreSame
  ${If} $R0 == 1
  ${OrIf} $TakeEdited == 1
    Delete "$INSTDIR\$6"
  ${ElseIf} ${FileExists} "$INSTDIR\$6"
    !insertmacro log "${UN}" "$INSTDIR\$6 was edited and stays."
  ${EndIf}
  Delete "$INSTDIR\original\$6"
FunctionEnd

; Takes a width (win64, win32) out of registry and folder.
Function ${UN}RemoveWidth
  Pop $7
  ${If} ${FileExists} "$INSTDIR\$7\QVEsprit.dll"
    Push $7
    Push "/u"
    Call ${UN}Register
    ${If} $R0 != 0
      !insertmacro log "${UN}" "$INSTDIR\$7\QVEsprit.dll couldn't be taken out of the registry (regsvr32: $R0)."
    ${EndIf}
  ${EndIf}
  ${If} $7 == "win64"
    !insertmacro each_program ${UN}RemoveFile win64
    !insertmacro each_text ${UN}RemoveText win64
  ${Else}
    !insertmacro each_program ${UN}RemoveFile win32
    !insertmacro each_text ${UN}RemoveText win32
  ${EndIf}
  RMDir "$INSTDIR\original\$7\Bitmaps"
  RMDir "$INSTDIR\original\$7"
  RMDir "$INSTDIR\original"
  RMDir "$INSTDIR\$7\Bitmaps"
  RMDir "$INSTDIR\$7"
FunctionEnd
!macroend

Var TakeEdited  ; 1: removal takes edited texts too
!insertmacro common_functions ""
!insertmacro common_functions "un."
