; Removal: what installation has put there, and nothing else.

Function un.onInit
  SetRegView 64
  Call un.ReadOptions
  ReadRegStr $0 HKLM "${ENTRY}" InstallLocation
  ReadRegStr $1 HKCU "${ENTRY}" InstallLocation
  ${If} $0 == $INSTDIR
    StrCpy $AllUsers 1
    SetShellVarContext all
    UserInfo::GetAccountType
    Pop $0
    ${If} $0 != "Admin"
      ${un.Fail} ${NO_RIGHTS} "QVEsprit is installed for all users: removing it takes an administrator's rights."
    ${EndIf}
  ${ElseIf} $1 == $INSTDIR
    StrCpy $AllUsers 0
    SetShellVarContext current
  ${Else}
    ${un.Fail} ${WRONG_OPTION} "QVEsprit isn't installed in $INSTDIR. Behind _?= comes its folder, without quotation marks; \
      where its entry in the list of programs was lost, run setup once more. Nothing has been changed."
  ${EndIf}
FunctionEnd

Function un.Remove
  SetOutPath $TEMP
  !insertmacro each_program un.CheckFree win64
  !insertmacro each_program un.CheckFree win32
  Push win32
  Call un.RemoveWidth
  Push win64
  Call un.RemoveWidth
  !insertmacro each_document un.RemoveFile
  RMDir "$INSTDIR\docs"
  Delete "$INSTDIR\uninstall.exe"
  RMDir "$INSTDIR"
  !insertmacro each_variable unset_variable
  DeleteRegKey SHCTX "${ENTRY}"
  ${If} $AllUsers == 0  ; a user may not have had these before
    DeleteRegKey /ifempty HKCU "Software\Microsoft\Windows\CurrentVersion\Uninstall"
    DeleteRegKey /ifempty HKCU "Software\Classes\CLSID"
    DeleteRegKey /ifempty HKCU "Software\Classes\TypeLib"
    DeleteRegKey /ifempty HKCU "Software\Classes"
  ${EndIf}
  ${If} $TakeToolbar == 1
    DeleteRegValue HKCU "${SETTINGS}" tbPosition
    DeleteRegValue HKCU "${SETTINGS}" tbTop
    DeleteRegValue HKCU "${SETTINGS}" tbLeft
    DeleteRegKey /ifempty HKCU "${SETTINGS}"
    DeleteRegKey /ifempty HKCU "Software\D.P.Technology\Esprit"
    DeleteRegKey /ifempty HKCU "Software\D.P.Technology"
  ${EndIf}
  !insertmacro tell_programs
  ${un.Log} "QVEsprit is removed from $INSTDIR."
  SetErrorLevel 0
FunctionEnd
