; The installer for Windows: for one user, without an administrator.
;   makensis -DVERSION=... -DFILES=FOLDER -DLISTS=FOLDER -DOUTPUT=FILE kelvaron.nsi
; LISTS has what tools/windows_build.sh makes of the folder FILES: install.nsh and uninstall.nsh.
; As the program: without a 32-bit part.
Target amd64-unicode
SetCompressor /SOLID lzma
Name "Kelvaron ${VERSION}"
OutFile "${OUTPUT}"
InstallDir "$LOCALAPPDATA\Programs\Kelvaron"
InstallDirRegKey HKCU "Software\Kelvaron" "Folder"
RequestExecutionLevel user
ManifestDPIAware true

!include MUI2.nsh
!define MUI_ICON "${FILES}\..\kelvaron.ico"
!define MUI_UNICON "${FILES}\..\kelvaron.ico"
!define UNINSTALL_KEY "Software\Microsoft\Windows\CurrentVersion\Uninstall\Kelvaron"
!define MUI_FINISHPAGE_RUN "$INSTDIR\kelvaron.exe"
!insertmacro MUI_PAGE_LICENSE "${FILES}\LICENSE.txt"
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_INSTFILES
!insertmacro MUI_PAGE_FINISH
!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_LANGUAGE "English"

VIProductVersion "${VERSION}.0.0"
VIAddVersionKey "ProductName" "Kelvaron"
VIAddVersionKey "FileDescription" "Kelvaron's installer"
VIAddVersionKey "FileVersion" "${VERSION}"
VIAddVersionKey "LegalCopyright" "Copyright (c) 2026 The Kelvaron authors"

Section
  !include "${LISTS}\install.nsh"
  SetOutPath "$INSTDIR"
  WriteUninstaller "$INSTDIR\uninstall.exe"
  CreateShortCut "$SMPROGRAMS\Kelvaron.lnk" "$INSTDIR\kelvaron.exe"
  WriteRegStr HKCU "Software\Kelvaron" "Folder" "$INSTDIR"
  WriteRegStr HKCU "${UNINSTALL_KEY}" "DisplayName" "Kelvaron"
  WriteRegStr HKCU "${UNINSTALL_KEY}" "DisplayVersion" "${VERSION}"
  WriteRegStr HKCU "${UNINSTALL_KEY}" "DisplayIcon" "$INSTDIR\kelvaron.exe"
  WriteRegStr HKCU "${UNINSTALL_KEY}" "Publisher" "The Kelvaron authors"
  WriteRegStr HKCU "${UNINSTALL_KEY}" "InstallLocation" "$INSTDIR"
  WriteRegStr HKCU "${UNINSTALL_KEY}" "UninstallString" '"$INSTDIR\uninstall.exe"'
  WriteRegStr HKCU "${UNINSTALL_KEY}" "QuietUninstallString" '"$INSTDIR\uninstall.exe" /S'
  WriteRegDWORD HKCU "${UNINSTALL_KEY}" "NoModify" 1
  WriteRegDWORD HKCU "${UNINSTALL_KEY}" "NoRepair" 1
SectionEnd

Section Uninstall
  ; Nothing is taken away that wasn't brought, but what the user is asked for.
  MessageBox MB_YESNO|MB_ICONQUESTION|MB_DEFBUTTON2 \
    "Delete your settings, your profile and received files too?" /SD IDNO IDNO keep
  Delete "$INSTDIR\kvconfig.cfg"
  Delete "$INSTDIR\profile.dat"
  RMDir /r "$INSTDIR\received"
keep:
  !include "${LISTS}\uninstall.nsh"
  Delete "$INSTDIR\uninstall.exe"
  Delete "$SMPROGRAMS\Kelvaron.lnk"
  RMDir "$INSTDIR"
  DeleteRegKey HKCU "${UNINSTALL_KEY}"
  DeleteRegKey HKCU "Software\Kelvaron"
SectionEnd
