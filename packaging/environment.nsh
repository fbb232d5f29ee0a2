; The variables of the environment: checked, set, and put back.

; $R0 is 1 where a text holds a piece.
Function Holds
  Pop $1
  Pop $0
  StrCpy $R0 0
  ${Do}
    StrCpy $2 $0 1
    ${If} $2 == ""
      ${ExitDo}
    ${ElseIf} $2 == $1
      StrCpy $R0 1
      ${ExitDo}
    ${EndIf}
    StrCpy $0 $0 "" 1
  ${Loop}
FunctionEnd

!macro refuse NAME VAR PIECE REASON
  Push "${VAR}"
  Push `${PIECE}`
  Call Holds
  ${If} $R0 == 1
    StrCpy $R0 `${NAME} is "${VAR}": ${REASON}`
    Return
  ${EndIf}
!macroend
!macro refuse_quote NAME VAR
  ${If} ${NAME} != DESKHOST_KB
    !insertmacro refuse ${NAME} "${VAR}" `"` `no name of a folder has a quotation mark. In a command line no backslash \
      may stand in front of the closing one.`
  ${EndIf}
!macroend

; $R0 is why the values can't be taken; empty where they can. The first one gets the separator at its end.
Function CheckVariables
  !insertmacro each_variable refuse_quote
  !insertmacro refuse QVEspritInstallPath "$InstallPath" " " `it must not have a blank. The programs there are started \
    by a command line without quotation marks, and the system would look for another program at the blank. Give a \
    folder without blanks.`
  !insertmacro refuse QVMakeListPath "$MakeListPath" " " `it must not have a blank. The path of the tool list is handed \
    to the list maker without quotation marks, which may take it for two. Give a folder without blanks.`
  StrCpy $0 $InstallPath 1 -1
  ${If} $InstallPath != ""
  ${AndIf} $0 != "\"
    StrCpy $InstallPath "$InstallPath\"
  ${EndIf}
  StrCpy $R0 ""
FunctionEnd

; READ, WRITE and TAKE a variable: for all users the system's, else the user's.
!define SYSTEM_VARIABLES "SYSTEM\CurrentControlSet\Control\Session Manager\Environment"
!macro read_variable NAME VAR
  ${If} $AllUsers == 1
    ReadRegStr ${VAR} HKLM "${SYSTEM_VARIABLES}" "${NAME}"
  ${Else}
    ReadRegStr ${VAR} HKCU "Environment" "${NAME}"
  ${EndIf}
!macroend
!macro write_variable WRITE NAME VALUE
  ${If} $AllUsers == 1
    ${WRITE} HKLM "${SYSTEM_VARIABLES}" "${NAME}" "${VALUE}"
  ${Else}
    ${WRITE} HKCU "Environment" "${NAME}" "${VALUE}"
  ${EndIf}
!macroend
!macro take_variable NAME
  ${If} $AllUsers == 1
    DeleteRegValue HKLM "${SYSTEM_VARIABLES}" "${NAME}"
  ${Else}
    DeleteRegValue HKCU "Environment" "${NAME}"
  ${EndIf}
!macroend
!macro tell_programs
  SendMessage ${HWND_BROADCAST} ${WM_SETTINGCHANGE} 0 "STR:Environment" /TIMEOUT=5000
!macroend

; $R0 is 0 where a text in the registry has no variables in it (REG_SZ); the roots are HKEY_LOCAL_MACHINE and
; HKEY_CURRENT_USER.
!define SYSTEM_ROOT -2147483646
!define USER_ROOT -2147483647
!macro is_plain ROOT KEY NAME
  System::Call 'advapi32::RegGetValueW(p ${ROOT}, w "${KEY}", w "${NAME}", i 0x10000002, p 0, p 0, p 0) i .R0'
!macroend

; What is set, and what was there before it, is kept with the entry in the list of programs: removal puts it back, as text
; of the kind that it was.
!macro set_variable NAME VAR
  ${If} ${VAR} != ""
    ClearErrors
    !insertmacro read_variable ${NAME} $0
    ${IfNot} ${Errors}
      ReadRegStr $1 SHCTX "${ENTRY}" "Set ${NAME}"
      ${If} $0 != $1
        !insertmacro keep_variable ${NAME}
      ${EndIf}
    ${EndIf}
    ClearErrors
    WriteRegStr SHCTX "${ENTRY}" "Set ${NAME}" "${VAR}"
    !insertmacro write_variable WriteRegExpandStr ${NAME} "${VAR}"
    ${If} ${Errors}
      ${Note} "The variable ${NAME} can't be set."
    ${EndIf}
  ${EndIf}
!macroend
!macro keep_variable NAME
  ${If} $AllUsers == 1
    !insertmacro is_plain ${SYSTEM_ROOT} "${SYSTEM_VARIABLES}" ${NAME}
  ${Else}
    !insertmacro is_plain ${USER_ROOT} "Environment" ${NAME}
  ${EndIf}
  ${If} $R0 = 0
    WriteRegStr SHCTX "${ENTRY}" "Before ${NAME}" $0
  ${Else}
    WriteRegExpandStr SHCTX "${ENTRY}" "Before ${NAME}" $0
  ${EndIf}
!macroend

!macro unset_variable NAME VAR
  ReadRegStr $0 SHCTX "${ENTRY}" "Set ${NAME}"
  !insertmacro read_variable ${NAME} $2
  ${If} $0 != ""
  ${AndIf} $0 == $2
    ClearErrors
    ReadRegStr $1 SHCTX "${ENTRY}" "Before ${NAME}"
    ${If} ${Errors}
      !insertmacro take_variable ${NAME}
    ${Else}
      !insertmacro bring_variable_back ${NAME}
    ${EndIf}
  ${EndIf}
!macroend
!macro bring_variable_back NAME
  ${If} $AllUsers == 1
    !insertmacro is_plain ${SYSTEM_ROOT} "${ENTRY}" "Before ${NAME}"
  ${Else}
    !insertmacro is_plain ${USER_ROOT} "${ENTRY}" "Before ${NAME}"
  ${EndIf}
  ${If} $R0 = 0
    !insertmacro write_variable WriteRegStr ${NAME} "$1"
  ${Else}
    !insertmacro write_variable WriteRegExpandStr ${NAME} "$1"
  ${EndIf}
!macroend
