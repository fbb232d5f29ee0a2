; What installation and removal share: UN is empty or "un.".

Var Failed      ; what regsvr32 ended with, or 1; 0 where all went well
Var TakeEdited  ; 1: removal takes edited texts too

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
!macro call UN FUNCTION ARGUMENT
  Push "${ARGUMENT}"
  Call ${UN}${FUNCTION}
!macroend

; Keys that a user may not have had before: an installation for one takes those that it made when it goes, where they are
; empty. Each has a bit in $MadeKeys.
Var MadeKeys
!macro each_shared_key DO
  !insertmacro ${DO} 1 "Software\Microsoft\Windows\CurrentVersion\Uninstall"
  !insertmacro ${DO} 2 "Software\Classes\CLSID"
  !insertmacro ${DO} 4 "Software\Classes\TypeLib"
  !insertmacro ${DO} 16 "Software\Classes\Interface"
  !insertmacro ${DO} 8 "Software\Classes"
!macroend
!macro drop_made_key BIT KEY
  IntOp $0 $MadeKeys & ${BIT}
  ${If} $0 <> 0
    DeleteRegKey /ifempty HKCU "${KEY}"
  ${EndIf}
!macroend
!macro drop_made_keys
  !insertmacro each_shared_key drop_made_key
!macroend

!macro common_functions UN
; A text goes into the log, and to where a silent run's output goes or onto the page. In UTF-8: a folder may have any name.
Function ${UN}Log
  Exch $R9
  Push $R8
  Push $R7
  Push $R6
  Push $R5
  StrCpy $R9 "$R9$\r$\n"
  System::Alloc 4096
  Pop $R7
  System::Call 'kernel32::WideCharToMultiByte(i 65001, i 0, w R9, i -1, p R7, i 4096, p 0, p 0) i .R6'
  IntOp $R6 $R6 - 1  ; without the NUL at its end
  FileOpen $R8 "$LogFile" a
  ${If} $R8 != ""
    FileSeek $R8 0 END
    System::Call 'kernel32::WriteFile(p R8, p R7, i R6, *i 0, p 0)'
    FileClose $R8
  ${EndIf}
  ${If} ${Silent}
    System::Call 'kernel32::GetStdHandle(i -11) p .R8'
    ${If} $R8 <> 0
    ${AndIf} $R8 <> -1
      StrLen $R5 $R9
      System::Call 'kernel32::WriteConsoleW(p R8, w R9, i R5, *i 0, p 0) i .R5'
      ${If} $R5 == 0  ; it's no console
        System::Call 'kernel32::WriteFile(p R8, p R7, i R6, *i 0, p 0)'
      ${EndIf}
    ${EndIf}
  ${Else}
    SetDetailsPrint both
    DetailPrint "$R9"
    SetDetailsPrint none
  ${EndIf}
  System::Free $R7
  ClearErrors
  Pop $R5
  Pop $R6
  Pop $R7
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

; Two setups at once would take each other's files. The system ends what this holds along with the program.
Function ${UN}BeAlone
  System::Call 'kernel32::CreateMutexW(p 0, i 1, w "Global\QVEsprit-setup") p .r0 ?e'
  Pop $1
  ${If} $0 = 0
  ${OrIf} $1 = 183  ; it was there already
    !insertmacro fail "${UN}" ${IN_USE} "Another setup of QVEsprit is running, maybe in another user's session. Wait for \
      its end, then try again. Nothing has been changed."
  ${EndIf}
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
    System::Call 'kernel32::GetFileSize(p r2, p 0) i .r4'
    System::Call 'kernel32::GetFileSize(p r3, p 0) i .r5'
    ${If} $4 = $5
      IntOp $5 $4 + $4
      System::Alloc $5
      Pop $0
      IntPtrOp $1 $0 + $4
      System::Call 'kernel32::ReadFile(p r2, p r0, i r4, *i .R3, p 0)'
      System::Call 'kernel32::ReadFile(p r3, p r1, i r4, *i .R4, p 0)'
      System::Call 'ntdll::RtlCompareMemory(p r0, p r1, p r4) p .r5'
      System::Free $0
      ${If} $R3 = $4
      ${AndIf} $R4 = $4
      ${AndIf} $5 = $4
        StrCpy $R0 1
      ${EndIf}
    ${EndIf}
  ${EndIf}
  ${If} $2 != ""
    FileClose $2
  ${EndIf}
  ${If} $3 != ""
    FileClose $3
  ${EndIf}
  ClearErrors
FunctionEnd

; Ends where a program or library, named below the folder, is in use: such a file can't be opened for writing. One that is
; only write-protected is none.
Function ${UN}CheckFree
  Pop $0
  ${If} ${FileExists} "$INSTDIR\$0"
    System::Call 'kernel32::GetFileAttributesW(w "$INSTDIR\$0") i .r2'
    SetFileAttributes "$INSTDIR\$0" NORMAL
    ClearErrors
    FileOpen $1 "$INSTDIR\$0" a
    ${If} $1 != ""
      FileClose $1
    ${EndIf}
    System::Call 'kernel32::SetFileAttributesW(w "$INSTDIR\$0", i r2)'
    ${If} ${Errors}
      !insertmacro fail "${UN}" ${IN_USE} "$INSTDIR\$0 is in use or can't be written. Close the CAM host and \
        deskhost for all users of this machine, then try again. Nothing has been changed."
    ${EndIf}
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
  ${If} $R0 != 0
    StrCpy $Failed $R0
    !insertmacro log "${UN}" "regsvr32 $1 ended with $R0 for $INSTDIR\$0\QVEsprit.dll."
  ${EndIf}
FunctionEnd

; Both, for the DLL of a width where there is one.
Function ${UN}EnterAgain
  Pop $0
  ${If} ${FileExists} "$INSTDIR\$0\QVEsprit.dll"
    Push $0
    !insertmacro call "${UN}" Register ""
  ${EndIf}
FunctionEnd
Function ${UN}TakeOut
  Pop $0
  ${If} ${FileExists} "$INSTDIR\$0\QVEsprit.dll"
    Push $0
    !insertmacro call "${UN}" Register "/u"
  ${EndIf}
FunctionEnd
!macroend

!insertmacro common_functions ""
!insertmacro common_functions "un."
