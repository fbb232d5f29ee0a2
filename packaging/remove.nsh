; Removal: what installation has put there, and nothing else.

Function un.onInit
  SetRegView 64
  Call un.ReadOptions
  Call un.BeAlone
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
  ${IfNot} ${FileExists} "$INSTDIR\${LIST}"
    ${un.Fail} ${WRONG_OPTION} "$INSTDIR\${LIST}, the list of what setup has put there, was lost. Run setup once more. \
      Nothing has been changed."
  ${EndIf}
FunctionEnd

; Out of the registry first: a DLL that can't do that has to stay, or else its entries would point nowhere.
Function un.TakeOutAll
  StrCpy $Failed 0
  !insertmacro call "un." TakeOut win32
  !insertmacro call "un." TakeOut win64
  ${If} $Failed != 0
    !insertmacro call "un." EnterAgain win32
    !insertmacro call "un." EnterAgain win64
    ${un.Fail} ${NOT_REGISTERED} "The add-in can't be taken out of the registry; the log has the status of regsvr32. Where \
      its DLL is damaged, run setup once more. All files are still there."
  ${EndIf}
FunctionEnd

Function un.RemoveFiles
  StrCpy $Left 0
  !insertmacro each_listed "un." DropListed "${WORK}\${LIST}"
  !insertmacro each_listed "un." DropListed "${LIST}"
  Call un.DropWork
  ${If} $Left == 1
    ${un.Fail} ${INCOMPLETE} "Not all files in $INSTDIR can be deleted: the log tells which, $LogFile. Close what uses them, \
      then remove QVEsprit again."
  ${EndIf}
  !insertmacro call "un." Drop uninstall.exe
  !insertmacro call "un." Drop "${LIST}"
  RMDir "$INSTDIR"
FunctionEnd

Function un.Remove
  SetOutPath $TEMP
  !insertmacro each_listed "un." CheckListedFree "${LIST}"
  Call un.TakeOutAll
  Call un.RemoveFiles
  !insertmacro each_variable unset_variable
  ReadRegDWORD $MadeKeys SHCTX "${ENTRY}" MadeKeys
  DeleteRegKey SHCTX "${ENTRY}"
  !insertmacro drop_made_keys
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
