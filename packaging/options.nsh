; The command line, and what follows from it.

!macro value_option NAME VAR
  StrLen $5 "/${NAME}="
  StrCpy $6 $4 $5
  ${If} $6 == "/${NAME}="
    StrCpy ${VAR} $4 "" $5
    ${Continue}
  ${EndIf}
!macroend
!macro flag_option NAME VAR VALUE
  ${If} $4 == "/${NAME}"
    StrCpy ${VAR} ${VALUE}
    ${Continue}
  ${EndIf}
!macroend
!macro variable_option NAME VAR
  !insertmacro value_option ${NAME} ${VAR}
!macroend
!macro install_options
  !insertmacro flag_option AllUsers $AllUsers 1
  !insertmacro flag_option CurrentUser $AllUsers 0
  !insertmacro value_option Width $Width
  !insertmacro value_option Host $Host
  !insertmacro value_option KnowledgeBase $KnowledgeBase
  !insertmacro each_variable variable_option
!macroend
!macro remove_options
  !insertmacro flag_option Toolbar $TakeToolbar 1
  !insertmacro flag_option Edited $TakeEdited 1
!macroend

; The words as the system parts them, so that quotes may stand around an option or around its value. What follows /D= or
; _?= without quotes goes to the end of the line, and is known already.
!macro read_options UN OPTIONS
Function ${UN}ReadOptions
  StrCpy $LogFile "$TEMP\QVEsprit-setup.log"
  ${If} ${Silent}
    System::Call 'kernel32::AttachConsole(i -1)'
  ${EndIf}
  System::Call 'kernel32::GetCommandLineW() p .r0'
  System::Call 'shell32::CommandLineToArgvW(p r0, *i .r1) p .r0'
  StrCpy $2 0
  ${Do}
    IntOp $2 $2 + 1
    ${If} $2 >= $1
      ${ExitDo}
    ${EndIf}
    IntOp $3 $2 * 8
    IntPtrOp $3 $0 + $3
    System::Call '*$3(p .r3)'
    System::Call 'kernel32::lstrcpynW(w .r4, p r3, i ${NSIS_MAX_STRLEN})'
    StrCpy $5 $4 3
    ${If} $5 == "_?="
      ${ExitDo}
    ${ElseIf} $5 == "/D="
      ${If} $Folder != ""
        ${ExitDo}
      ${EndIf}
      StrCpy $Folder $4 "" 3  ; quoted as a whole, as shells do it
      ${Continue}
    ${ElseIf} $4 == "/S"
      ${IfNot} ${Silent}  ; a small letter
        SetSilent silent
        System::Call 'kernel32::AttachConsole(i -1)'
      ${EndIf}
      ${Continue}
    ${ElseIf} $4 == "/NCRC"
      ${Continue}
    ${EndIf}
    !insertmacro value_option Log $LogFile
    !insertmacro ${OPTIONS}
    !insertmacro fail "${UN}" ${WRONG_OPTION} "$4 is no option. docs\install.md tells the options that there are."
  ${Loop}
  System::Call 'kernel32::LocalFree(p r0)'
FunctionEnd
!macroend
Var TakeToolbar  ; 1: removal takes the toolbar's place
!insertmacro read_options "" install_options
!insertmacro read_options "un." remove_options

; The width of the host's program, from its header.
Function ReadHost
  ClearErrors
  FileOpen $0 "$Host" r
  ${If} ${Errors}
    ${Fail} ${WRONG_OPTION} "/Host=: $Host can't be read. Give the file of the CAM host's program."
  ${EndIf}
  FileSeek $0 60
  FileReadWord $0 $1
  IntOp $1 $1 + 4
  FileSeek $0 $1
  FileReadWord $0 $1
  FileClose $0
  StrCpy $2 $Width
  ${If} $1 = 0x8664
    StrCpy $Width 64
  ${ElseIf} $1 = 0x14C
    StrCpy $Width 32
  ${Else}
    ${Fail} ${WRONG_OPTION} "/Host=: $Host is no program of 32 or 64 bits that an add-in could be loaded into."
  ${EndIf}
  ${If} $2 != ""
  ${AndIf} $2 != $Width
    ${Fail} ${WRONG_OPTION} "/Width=$2, but $Host (/Host=) is a program of $Width bits. Leave one of them out."
  ${EndIf}
FunctionEnd

; For all users or for one: as it was told, as it is installed, as the rights are.
Function ChooseUsers
  UserInfo::GetAccountType
  Pop $0
  ${If} $AllUsers == ""
    StrCpy $AllUsers 0
    ReadRegStr $1 HKCU "${ENTRY}" InstallLocation
    ${If} $0 == "Admin"
    ${AndIf} $1 == ""
      StrCpy $AllUsers 1
    ${EndIf}
  ${EndIf}
  ${If} $AllUsers == 1
  ${AndIf} $0 != "Admin"
    ${Fail} ${NO_RIGHTS} "Installing for all users takes an administrator's rights. Start setup as an administrator, or \
      give /CurrentUser."
  ${EndIf}
FunctionEnd

; The folder: what /D= said, where it is installed, or the system's usual one.
Function ChooseFolder
  ${If} $AllUsers == 1
    SetShellVarContext all
    StrCpy $0 "$PROGRAMFILES64\QVEsprit"
  ${Else}
    SetShellVarContext current
    StrCpy $0 "$LOCALAPPDATA\Programs\QVEsprit"
  ${EndIf}
  ReadRegStr $1 SHCTX "${ENTRY}" InstallLocation
  ${If} $Folder != ""
    StrCpy $INSTDIR $Folder
  ${ElseIf} $1 != ""
    StrCpy $INSTDIR $1
  ${Else}
    StrCpy $INSTDIR $0
  ${EndIf}
FunctionEnd

; A folder is told whole: another program's current one is nobody's business. Then as the system writes it.
Function ReadFolder
  StrCpy $0 $Folder 2
  StrCpy $1 $Folder 2 1
  ${If} $0 != "\\"
  ${AndIf} $1 != ":\"
    ${Fail} ${WRONG_OPTION} "/D=$Folder: give the whole name of the folder, with its drive."
  ${EndIf}
  System::Call 'kernel32::GetFullPathNameW(w "$Folder", i ${NSIS_MAX_STRLEN}, w .r0, p 0)'
  StrCpy $1 $0 1 -1
  ${If} $1 == "\"
    StrCpy $0 $0 -1
  ${EndIf}
  StrCpy $Folder $0
FunctionEnd

; Where nothing told it: as it is installed, or all that this Windows can load.
Function ChooseWidth
  ${If} $Width == ""
    StrCpy $Width 64
    ${If} ${FileExists} "$INSTDIR\win32\QVEsprit.dll"
      StrCpy $Width 32
      ${If} ${FileExists} "$INSTDIR\win64\QVEsprit.dll"
        StrCpy $Width both
      ${EndIf}
    ${ElseIf} ${FileExists} "$WINDIR\SysWOW64\regsvr32.exe"
    ${AndIfNot} ${FileExists} "$INSTDIR\win64\QVEsprit.dll"
      StrCpy $Width both
    ${EndIf}
  ${EndIf}
FunctionEnd

Function .onInit
  SetRegView 64
  StrCpy $Folder $INSTDIR
  Call ReadOptions
  Call BeAlone
  ${If} $Folder != ""
    Call ReadFolder
  ${EndIf}
  ${If} $Host != ""
    Call ReadHost
  ${EndIf}
  ${If} $Width != ""
  ${AndIf} $Width != 64
  ${AndIf} $Width != 32
  ${AndIf} $Width != both
    ${Fail} ${WRONG_OPTION} "/Width=$Width: it has to be 64, 32 or both, as the CAM host is."
  ${EndIf}
  Call ChooseUsers
  Call ChooseFolder
  Call ChooseWidth
  Call CheckVariables
  ${If} $R0 != ""
    ${Fail} ${WRONG_OPTION} "$R0"
  ${EndIf}
FunctionEnd
