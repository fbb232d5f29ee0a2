; The pages that a user sees.

Var ForAll
Var ForOne
Var Only64
Var Only32
Page custom ShowChoice LeaveChoice
!insertmacro MUI_PAGE_DIRECTORY
Page custom ShowVariables LeaveVariables
!insertmacro MUI_PAGE_INSTFILES
UninstPage custom un.ShowChoice un.LeaveChoice
!insertmacro MUI_UNPAGE_INSTFILES

!macro check HANDLE CONDITION
  ${If} ${CONDITION}
    ${NSD_Check} ${HANDLE}
  ${EndIf}
!macroend

Function ShowChoice
  !insertmacro MUI_HEADER_TEXT "Users and width" "For whom, and for which CAM host"
  nsDialogs::Create 1018
  Pop $0
  ${NSD_CreateGroupBox} 0 0 100% 46u "Install"
  Pop $0
  ${NSD_CreateRadioButton} 8u 12u 90% 12u "for &all users of this machine (as an administrator)"
  Pop $ForAll
  ${NSD_AddStyle} $ForAll ${WS_GROUP}
  ${NSD_CreateRadioButton} 8u 26u 90% 12u "for &me only"
  Pop $ForOne
  ${NSD_CreateGroupBox} 0 54u 100% 60u "The CAM host is a program of"
  Pop $0
  ${NSD_CreateRadioButton} 8u 66u 90% 12u "&64 bits"
  Pop $Only64
  ${NSD_AddStyle} $Only64 ${WS_GROUP}
  ${NSD_CreateRadioButton} 8u 80u 90% 12u "&32 bits"
  Pop $Only32
  ${NSD_CreateRadioButton} 8u 94u 90% 12u "&both: there are hosts of either width, or I don't know"
  Pop $1
  UserInfo::GetAccountType
  Pop $0
  ${If} $0 != "Admin"
    EnableWindow $ForAll 0
  ${EndIf}
  ${IfNot} ${FileExists} "$WINDIR\SysWOW64\regsvr32.exe"
    EnableWindow $Only32 0
    EnableWindow $1 0
  ${EndIf}
  !insertmacro check $ForAll "$AllUsers == 1"
  !insertmacro check $ForOne "$AllUsers == 0"
  !insertmacro check $Only64 "$Width == 64"
  !insertmacro check $Only32 "$Width == 32"
  !insertmacro check $1 "$Width == both"
  nsDialogs::Show
FunctionEnd

Function LeaveChoice
  StrCpy $Width both
  ${NSD_GetState} $Only64 $0
  ${If} $0 == ${BST_CHECKED}
    StrCpy $Width 64
  ${EndIf}
  ${NSD_GetState} $Only32 $0
  ${If} $0 == ${BST_CHECKED}
    StrCpy $Width 32
  ${EndIf}
  StrCpy $1 $AllUsers
  ${NSD_GetState} $ForAll $AllUsers
  ${If} $AllUsers != $1
    Call ChooseFolder
  ${EndIf}
FunctionEnd

; A field for each variable; an empty one, and one that nobody changes, leaves it as it is.
Var FieldInstallPath
Var FieldExportPath
Var FieldUserModelsPath
Var FieldMakeListPath
Var FieldKnowledgeBase

!macro make_field NAME LABEL
  StrCpy $3 $${NAME}
  ${If} $3 == ""
    !insertmacro read_variable ${LABEL} $3
  ${EndIf}
  StrCpy $2 "${LABEL}"
  ${If} $2 == DESKHOST_KB
    StrCpy $2 "Knowledge base (deskhost)"
  ${EndIf}
  ${NSD_CreateLabel} 0 $1u 37% 10u $2
  Pop $0
  IntOp $1 $1 - 2
  ${NSD_CreateText} 37% $1u 62% 12u "$3"
  Pop $Field${NAME}
  IntOp $1 $1 + 18
!macroend

Function ShowVariables
  !insertmacro MUI_HEADER_TEXT "Folders" "Variables of the environment that the add-in reads"
  nsDialogs::Create 1018
  Pop $0
  StrCpy $1 2
  !insertmacro make_field InstallPath QVEspritInstallPath
  !insertmacro make_field ExportPath QVEspritExportPath
  !insertmacro make_field UserModelsPath QVEspritUserModelsPath
  !insertmacro make_field MakeListPath QVMakeListPath
  !insertmacro make_field KnowledgeBase DESKHOST_KB
  IntOp $1 $1 + 2
  ${NSD_CreateLabel} 0 $1u 100% 44u "QVEspritInstallPath and QVMakeListPath must not have a blank: they are handed on in a \
    command line without quotation marks. Each seat needs an export folder of its own. An empty field leaves its variable \
    as it is. They reach a CAM host that is started afterwards."
  Pop $0
  nsDialogs::Show
FunctionEnd

!macro read_field NAME LABEL
  ${NSD_GetText} $Field${NAME} $${NAME}
  !insertmacro read_variable ${LABEL} $3
  ${If} $3 == $${NAME}
    StrCpy $${NAME} ""
  ${EndIf}
!macroend

Function LeaveVariables
  !insertmacro read_field InstallPath QVEspritInstallPath
  !insertmacro read_field ExportPath QVEspritExportPath
  !insertmacro read_field UserModelsPath QVEspritUserModelsPath
  !insertmacro read_field MakeListPath QVMakeListPath
  !insertmacro read_field KnowledgeBase DESKHOST_KB
  Call CheckVariables
  ${If} $R0 != ""
    MessageBox MB_OK|MB_ICONEXCLAMATION "$R0"
    Abort
  ${EndIf}
FunctionEnd

Function un.ShowChoice
  !insertmacro MUI_HEADER_TEXT "Remove QVEsprit" "$INSTDIR"
  nsDialogs::Create 1018
  Pop $0
  ${NSD_CreateLabel} 0 0 100% 36u "All that setup has put there is removed: registration, variables that setup has set, and \
    files. A file that you made stays. On wish these go too:"
  Pop $0
  ${NSD_CreateCheckBox} 0 42u 100% 12u "the &place of the toolbar, kept in the registry for the present user"
  Pop $ForAll
  ${NSD_CreateCheckBox} 0 58u 100% 12u "&settings and texts that were edited"
  Pop $ForOne
  !insertmacro check $ForAll "$TakeToolbar == 1"
  !insertmacro check $ForOne "$TakeEdited == 1"
  nsDialogs::Show
FunctionEnd

Function un.LeaveChoice
  ${NSD_GetState} $ForAll $TakeToolbar
  ${NSD_GetState} $ForOne $TakeEdited
FunctionEnd
