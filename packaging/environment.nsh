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
!macro write_variable NAME VALUE
  ${If} $AllUsers == 1
    WriteRegExpandStr HKLM "${SYSTEM_VARIABLES}" "${NAME}" "${VALUE}"
  ${Else}
    WriteRegExpandStr HKCU "Environment" "${NAME}" "${VALUE}"
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

; What is set, and what was there before it, is kept with the entry in the list of programs: removal puts it back.
!macro set_variable NAME VAR
  ${If} ${VAR} != ""
    !insertmacro read_variable ${NAME} $0
    ReadRegStr $1 SHCTX "${ENTRY}" "Set ${NAME}"
    ${If} $0 != $1
      WriteRegStr SHCTX "${ENTRY}" "Before ${NAME}" $0
    ${EndIf}
    WriteRegStr SHCTX "${ENTRY}" "Set ${NAME}" "${VAR}"
    !insertmacro write_variable ${NAME} "${VAR}"
    ClearErrors
  ${EndIf}
!macroend
!macro unset_variable NAME VAR
  ReadRegStr $0 SHCTX "${ENTRY}" "Set ${NAME}"
  ReadRegStr $1 SHCTX "${ENTRY}" "Before ${NAME}"
  !insertmacro read_variable ${NAME} $2
  ${If} $0 != ""
  ${AndIf} $0 == $2
    ${If} $1 != ""
      !insertmacro write_variable ${NAME} "$1"
    ${Else}
      !insertmacro take_variable ${NAME}
    ${EndIf}
  ${EndIf}
!macroend
