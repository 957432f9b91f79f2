; The installer of Vantor for 64-bit Windows, for the user who runs it or for all users of the computer. Run by build-programs,
; which defines VERSION, LIST (what installer_files.py says of the files), SIZE (theirs in KiB), ICON and OUTPUT.
; Being a 64-bit program, it is refused by Windows of 32 bits.
Target amd64-unicode
SetCompressor /SOLID lzma
ManifestDPIAware true
ManifestLongPathAware true
AllowSkipFiles off

Name "Vantor"
OutFile "${OUTPUT}"
BrandingText "Vantor ${VERSION}"
VIProductVersion "${VERSION}.0"
VIAddVersionKey "ProductName" "Vantor"
VIAddVersionKey "ProductVersion" "${VERSION}"
VIAddVersionKey "FileVersion" "${VERSION}"
VIAddVersionKey "FileDescription" "Installs Vantor, editor for recipe files"
VIAddVersionKey "CompanyName" "The Vantor developers"
VIAddVersionKey "LegalCopyright" "2026 The Vantor developers"

!define CLASSES "Software\Classes"
!define APPLICATION "${CLASSES}\Applications\vantor.exe"
!define CAPABILITIES "Software\Vantor\Capabilities"
!define UNINSTALL "Software\Microsoft\Windows\CurrentVersion\Uninstall\Vantor"
!define /math SIZE_IN_MIB ${SIZE} / 1024

; Who may, is asked for whom it is to be; the next version goes where the last one is.
!define MULTIUSER_EXECUTIONLEVEL Highest
!define MULTIUSER_MUI
!define MULTIUSER_INSTALLMODE_COMMANDLINE
!define MULTIUSER_INSTALLMODE_DEFAULT_CURRENTUSER
!define MULTIUSER_USE_PROGRAMFILES64
!define MULTIUSER_INSTALLMODE_INSTDIR "Vantor"
!define MULTIUSER_INSTALLMODE_INSTDIR_REGISTRY_KEY "${UNINSTALL}"
!define MULTIUSER_INSTALLMODE_INSTDIR_REGISTRY_VALUENAME "InstallLocation"
!define MULTIUSER_INSTALLMODE_DEFAULT_REGISTRY_KEY "${UNINSTALL}"
!define MULTIUSER_INSTALLMODE_DEFAULT_REGISTRY_VALUENAME "InstallLocation"
!define MULTIUSER_INIT_TEXT_ALLUSERSNOTPOSSIBLE "For all users of this computer, only an administrator can do that."

!define MUI_ICON "${ICON}"
!define MUI_UNICON "${ICON}"
!define MUI_ABORTWARNING

!include MultiUser.nsh
!include MUI2.nsh
!include FileFunc.nsh
!include LogicLib.nsh
!include WinVer.nsh
!include "${LIST}" ; INSTALL_FILES and REMOVE_FILES

!insertmacro MULTIUSER_PAGE_INSTALLMODE
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_INSTFILES
!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_LANGUAGE "English"

; Says why nothing is done, also to who watches the exit code alone.
!macro GiveUp TEXT
  DetailPrint "${TEXT}"
  MessageBox MB_OK|MB_ICONSTOP "${TEXT}" /SD IDOK
  SetErrorLevel 2
  Abort "${TEXT}"
!macroend

; A program that runs can neither be written nor removed. WaitForPrograms asks to end those in the folder on the stack before
; anything is changed.
!macro WaitForPrograms UN
Function ${UN}WaitForProgram
  Exch $0
  ${DoWhile} ${FileExists} "$0"
    ClearErrors
    FileOpen $1 "$0" a
    ${IfNot} ${Errors}
      FileClose $1
      ${ExitDo}
    ${EndIf}
    ${If} ${Cmd} 'MessageBox MB_RETRYCANCEL|MB_ICONEXCLAMATION "$0 is running, or may not be changed. End it, then retry." /SD IDCANCEL IDCANCEL'
      !insertmacro GiveUp "$0 is running, or may not be changed. Nothing was changed."
    ${EndIf}
  ${Loop}
  Pop $0
FunctionEnd

Function ${UN}WaitForPrograms
  Exch $2
  Push "$2\vantor.exe"
  Call ${UN}WaitForProgram
  Push "$2\vantor-cli.exe"
  Call ${UN}WaitForProgram
  Push "$2\vantor-sheet.exe"
  Call ${UN}WaitForProgram
  Pop $2
FunctionEnd
!macroend
!insertmacro WaitForPrograms ""
!insertmacro WaitForPrograms "un."

Function .onInit
  ${IfNot} ${AtLeastWin10}
  ${OrIfNot} ${AtLeastBuild} 17763
    MessageBox MB_OK|MB_ICONSTOP "Vantor needs Windows 10, version 1809, or a later one." /SD IDOK
    SetErrorLevel 2
    Quit
  ${EndIf}
  StrCpy $9 $INSTDIR ; what /D= named, which is lost in the next line
  !insertmacro MULTIUSER_INIT
  ${If} $9 != ""
    StrCpy $INSTDIR $9
  ${EndIf}
FunctionEnd

; Whoever's it was installed for: /CurrentUser says, which the entry of one user's has, else the entry of its folder.
Function un.onInit
  !insertmacro MULTIUSER_UNINIT
  ReadRegStr $0 HKLM "${UNINSTALL}" "InstallLocation"
  ${GetParameters} $1
  ClearErrors
  ${GetOptions} $1 "/CurrentUser" $2
  ${IfNot} ${Errors}
    StrCpy $0 ""
  ${EndIf}
  ${If} $0 != $INSTDIR
    Call un.MultiUser.InstallMode.CurrentUser
  ${ElseIf} $MultiUser.Privileges == "Admin"
    Call un.MultiUser.InstallMode.AllUsers
  ${Else}
    MessageBox MB_OK|MB_ICONSTOP "${MULTIUSER_INIT_TEXT_ALLUSERSNOTPOSSIBLE}" /SD IDOK
    SetErrorLevel 2
    Quit
  ${EndIf}
FunctionEnd

; In MiB: of 2 TiB and more, KiB would be more than the comparison can hold.
Function CheckSpace
  ${GetRoot} "$INSTDIR" $0
  ${DriveSpace} "$0\" "/D=F /S=M" $1
  ${If} $1 <= ${SIZE_IN_MIB}
    !insertmacro GiveUp "There is not enough space in $0 for Vantor. Nothing was changed."
  ${EndIf}
FunctionEnd

; By its own program, which knows its files: those that this version has no more do not stay.
Function RemoveEarlierVersion
  ReadRegStr $0 SHCTX "${UNINSTALL}" "InstallLocation"
  ${If} $0 == ""
  ${OrIfNot} ${FileExists} "$0\uninstall.exe"
    Return
  ${EndIf}
  Push $0
  Call WaitForPrograms
  ExecWait '"$0\uninstall.exe" /S /$MultiUser.InstallMode _?=$0' $1
  ${If} $1 <> 0
    !insertmacro GiveUp "The earlier version in $0 could not be removed."
  ${EndIf}
  Delete "$0\uninstall.exe"
  RMDir "$0"
FunctionEnd

!macro OpenedByVantor KEY
  WriteRegStr SHCTX "${KEY}\shell\open\command" "" '"$INSTDIR\vantor.exe" "%1"'
!macroend

; Vantor is offered for files with the ending.
!macro AddType ENDING NAME ICON
  WriteRegStr SHCTX "${CLASSES}\Vantor.${ENDING}" "" "${NAME}"
  WriteRegStr SHCTX "${CLASSES}\Vantor.${ENDING}\DefaultIcon" "" "$INSTDIR\vantor.exe,-${ICON}"
  !insertmacro OpenedByVantor "${CLASSES}\Vantor.${ENDING}"
  WriteRegNone SHCTX "${CLASSES}\.${ENDING}\OpenWithProgids" "Vantor.${ENDING}"
  WriteRegStr SHCTX "${APPLICATION}\SupportedTypes" ".${ENDING}" ""
!macroend

; And opens them, if no other program did so before.
!macro AddOwnType ENDING NAME ICON
  !insertmacro AddType "${ENDING}" "${NAME}" "${ICON}"
  WriteRegStr SHCTX "${CAPABILITIES}\FileAssociations" ".${ENDING}" "Vantor.${ENDING}"
  ReadRegStr $0 HKCU "${CLASSES}\.${ENDING}" ""
  ${If} $0 == ""
    ReadRegStr $0 HKLM "${CLASSES}\.${ENDING}" ""
  ${EndIf}
  ${If} $0 == ""
  ${OrIf} $0 == "Vantor.${ENDING}"
    WriteRegStr SHCTX "${CLASSES}\.${ENDING}" "" "Vantor.${ENDING}"
  ${EndIf}
!macroend

!macro RemoveType ENDING
  DeleteRegKey SHCTX "${CLASSES}\Vantor.${ENDING}"
  DeleteRegValue SHCTX "${CLASSES}\.${ENDING}\OpenWithProgids" "Vantor.${ENDING}"
  DeleteRegKey /ifempty SHCTX "${CLASSES}\.${ENDING}\OpenWithProgids"
  ReadRegStr $0 SHCTX "${CLASSES}\.${ENDING}" ""
  ${If} $0 == "Vantor.${ENDING}"
    DeleteRegValue SHCTX "${CLASSES}\.${ENDING}" ""
  ${EndIf}
  DeleteRegKey /ifempty SHCTX "${CLASSES}\.${ENDING}"
!macroend

Function AddTypes
  WriteRegStr SHCTX "${APPLICATION}" "FriendlyAppName" "Vantor"
  !insertmacro OpenedByVantor "${APPLICATION}"
  !insertmacro AddOwnType "rcp" "Operator panel recipe" 2
  !insertmacro AddOwnType "erp" "Paged operator panel recipe (1 MB flat part)" 3
  !insertmacro AddOwnType "frp" "Paged operator panel recipe (64 KB flat part)" 4
  !insertmacro AddType "csv" "Table of values" 1
  WriteRegStr SHCTX "${CAPABILITIES}" "ApplicationName" "Vantor"
  WriteRegStr SHCTX "${CAPABILITIES}" "ApplicationDescription" "Editor for the recipe files of operator panels"
  WriteRegStr SHCTX "Software\RegisteredApplications" "Vantor" "${CAPABILITIES}"
  ${RefreshShellIcons}
FunctionEnd

Function un.RemoveTypes
  DeleteRegValue SHCTX "Software\RegisteredApplications" "Vantor"
  DeleteRegKey SHCTX "${CAPABILITIES}"
  DeleteRegKey /ifempty SHCTX "Software\Vantor"
  !insertmacro RemoveType "rcp"
  !insertmacro RemoveType "erp"
  !insertmacro RemoveType "frp"
  !insertmacro RemoveType "csv"
  DeleteRegKey SHCTX "${APPLICATION}"
  ${RefreshShellIcons}
FunctionEnd

; The dialogs for files begin in the user's own folder.
Function AddToStartMenu
  CreateDirectory "$SMPROGRAMS\Vantor"
  StrCpy $OUTDIR "%USERPROFILE%"
  CreateShortCut "$SMPROGRAMS\Vantor\Vantor.lnk" "$INSTDIR\vantor.exe"
  CreateShortCut "$SMPROGRAMS\Vantor\Vantor guide.lnk" "$INSTDIR\docs\html\guide\index.html"
FunctionEnd

Function un.RemoveFromStartMenu
  Delete "$SMPROGRAMS\Vantor\Vantor.lnk"
  Delete "$SMPROGRAMS\Vantor\Vantor guide.lnk"
  RMDir "$SMPROGRAMS\Vantor"
FunctionEnd

Function AddToApps
  WriteRegStr SHCTX "${UNINSTALL}" "DisplayName" "Vantor"
  WriteRegStr SHCTX "${UNINSTALL}" "DisplayVersion" "${VERSION}"
  WriteRegStr SHCTX "${UNINSTALL}" "Publisher" "The Vantor developers"
  WriteRegStr SHCTX "${UNINSTALL}" "DisplayIcon" "$INSTDIR\vantor.exe"
  WriteRegStr SHCTX "${UNINSTALL}" "InstallLocation" "$INSTDIR"
  WriteRegStr SHCTX "${UNINSTALL}" "UninstallString" '"$INSTDIR\uninstall.exe" /$MultiUser.InstallMode'
  WriteRegStr SHCTX "${UNINSTALL}" "QuietUninstallString" '"$INSTDIR\uninstall.exe" /S /$MultiUser.InstallMode'
  WriteRegDWORD SHCTX "${UNINSTALL}" "EstimatedSize" ${SIZE}
  WriteRegDWORD SHCTX "${UNINSTALL}" "NoModify" 1
  WriteRegDWORD SHCTX "${UNINSTALL}" "NoRepair" 1
FunctionEnd

Section
  Push $INSTDIR
  Call WaitForPrograms
  Call CheckSpace
  Call RemoveEarlierVersion
  !insertmacro INSTALL_FILES
  WriteUninstaller "$INSTDIR\uninstall.exe"
  Call AddToApps
  Call AddToStartMenu
  Call AddTypes
SectionEnd

; Only what was installed: what the user put beside it stays, and so do the library and the versions in the user's own data.
Section "Uninstall"
  Push $INSTDIR
  Call un.WaitForPrograms
  Call un.RemoveTypes
  Call un.RemoveFromStartMenu
  SetOutPath $TEMP
  Delete "$INSTDIR\uninstall.exe"
  !insertmacro REMOVE_FILES
  DeleteRegKey SHCTX "${UNINSTALL}"
SectionEnd
