; The installer for Windows: for the user who runs it, without an administrator's rights.
;   makensis -DVERSION=... -DTARGET=x86|amd64 -DICON=... -DLISTS=FOLDER -DOUTPUT=... installer.nsi
; LISTS holds install.nsh and remove.nsh, which name what is installed.
Unicode true
Target ${TARGET}-unicode
RequestExecutionLevel user
SetCompressor /SOLID lzma
Name "Tarnvale"
OutFile "${OUTPUT}"
InstallDir "$LOCALAPPDATA\Programs\Tarnvale"
!define BOOKS "Software\Microsoft\Windows\CurrentVersion\Uninstall\Tarnvale"
InstallDirRegKey HKCU "${BOOKS}" "InstallLocation"
ManifestDPIAware true

VIProductVersion "${VERSION}.0"
VIAddVersionKey "ProductName" "Tarnvale"
VIAddVersionKey "CompanyName" "Tarnvale"
VIAddVersionKey "FileDescription" "Installs Tarnvale"
VIAddVersionKey "FileVersion" "${VERSION}"
VIAddVersionKey "ProductVersion" "${VERSION}"
VIAddVersionKey "LegalCopyright" "The Tarnvale authors"

!include MUI2.nsh
!include FileFunc.nsh
!define MUI_ICON "${ICON}"
!define MUI_UNICON "${ICON}"
!define MUI_COMPONENTSPAGE_NODESC
!define MUI_FINISHPAGE_RUN "$INSTDIR\Tarnvale.exe"
!define MUI_FINISHPAGE_RUN_TEXT "Start Tarnvale"
!insertmacro MUI_PAGE_COMPONENTS
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_INSTFILES
!insertmacro MUI_PAGE_FINISH
!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_LANGUAGE "English"

; An instance of this folder's ends; it is asked first. What can't be replaced must not be
; left half replaced.
!macro EndInstance
  ${If} ${FileExists} "$INSTDIR\Quit.exe"
    ExecWait '"$INSTDIR\Quit.exe"'
  ${EndIf}
!macroend

Section "Tarnvale"
  SectionIn RO
  !insertmacro EndInstance
  ; What an older version had and this one lacks goes with it. Settings and log stay.
  ${If} ${FileExists} "$INSTDIR\Uninstall.exe"
    ExecWait '"$INSTDIR\Uninstall.exe" /S /UPGRADE _?=$INSTDIR'
  ${EndIf}
  !include "${LISTS}/install.nsh"
  SetOutPath "$INSTDIR"
  WriteUninstaller "$INSTDIR\Uninstall.exe"
  ; Names the folder of settings and log before the first start asks for it.
  ExecWait '"$INSTDIR\U3-Data.exe"'

  CreateShortcut "$SMPROGRAMS\Tarnvale.lnk" "$INSTDIR\Tarnvale.exe"
  WriteRegStr HKCU "${BOOKS}" "DisplayName" "Tarnvale"
  WriteRegStr HKCU "${BOOKS}" "DisplayVersion" "${VERSION}"
  WriteRegStr HKCU "${BOOKS}" "DisplayIcon" "$INSTDIR\Tarnvale.exe"
  WriteRegStr HKCU "${BOOKS}" "Publisher" "The Tarnvale authors"
  WriteRegStr HKCU "${BOOKS}" "InstallLocation" "$INSTDIR"
  WriteRegStr HKCU "${BOOKS}" "UninstallString" '"$INSTDIR\Uninstall.exe"'
  WriteRegStr HKCU "${BOOKS}" "QuietUninstallString" '"$INSTDIR\Uninstall.exe" /S'
  WriteRegDWORD HKCU "${BOOKS}" "NoModify" 1
  WriteRegDWORD HKCU "${BOOKS}" "NoRepair" 1
  ${GetSize} "$INSTDIR" "/S=0K" $0 $1 $2
  WriteRegDWORD HKCU "${BOOKS}" "EstimatedSize" "$0"
SectionEnd

Section /o "Start with each session" Autostart
  CreateShortcut "$SMSTARTUP\Tarnvale.lnk" "$INSTDIR\Tarnvale.exe"
SectionEnd

Section "-"
  ${IfNot} ${SectionIsSelected} ${Autostart}
    Delete "$SMSTARTUP\Tarnvale.lnk"
  ${EndIf}
SectionEnd

; Silently, /AUTOSTART chooses what the box on the first page does.
Function .onInit
  ${GetParameters} $0
  ClearErrors
  ${GetOptions} $0 "/AUTOSTART" $1
  ${IfNot} ${Errors}
  ${OrIf} ${FileExists} "$SMSTARTUP\Tarnvale.lnk"
    !insertmacro SelectSection ${Autostart}
  ${EndIf}
FunctionEnd

; Leaves what the program has written: Data, and Data.txt, which names it.
Section "Uninstall"
  !insertmacro EndInstance
  !include "${LISTS}/remove.nsh"
  Delete "$INSTDIR\Uninstall.exe"
  RMDir "$INSTDIR"
  ${GetParameters} $0
  ClearErrors
  ${GetOptions} $0 "/UPGRADE" $1
  ${If} ${Errors}
    Delete "$SMPROGRAMS\Tarnvale.lnk"
    Delete "$SMSTARTUP\Tarnvale.lnk"
    DeleteRegKey HKCU "${BOOKS}"
  ${EndIf}
SectionEnd
