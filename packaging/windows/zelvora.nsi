; The installer of Zelvora for 64-bit Windows, made by the CMake target "installer". It is given
;   VERSION  four dotted numbers
;   STAGE    a directory with the programs and the Qt libraries, and nothing else
;   OUTPUT   the installer to make
;
; The other files are found from the directory of this script.
;
; The application keeps its database beside its executable. Whatever is done here, docs.db and what
; the user keeps beside it are neither replaced nor removed.

Unicode true
RequestExecutionLevel admin
SetCompressor /SOLID lzma

!include MUI2.nsh
!include x64.nsh

!define UNINSTALL_KEY "Software\Microsoft\Windows\CurrentVersion\Uninstall\Zelvora"

Name "Zelvora"
OutFile "${OUTPUT}"
InstallDir "$PROGRAMFILES64\Zelvora"

VIProductVersion "${VERSION}"
VIAddVersionKey "ProductName" "Zelvora"
VIAddVersionKey "FileDescription" "Zelvora"
VIAddVersionKey "FileVersion" "${VERSION}"
VIAddVersionKey "LegalCopyright" "Copyright (c) 2026 The Zelvora developers"

!define MUI_ICON "zelvora.ico"
!define MUI_UNICON "zelvora.ico"
!insertmacro MUI_PAGE_LICENSE "../../LICENSE"
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_INSTFILES
!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_LANGUAGE "Russian"
!insertmacro MUI_LANGUAGE "English"

LangString Running ${LANG_RUSSIAN} "Закройте программу Zelvora и повторите."
LangString Running ${LANG_ENGLISH} "Close Zelvora and try again."
LangString NoDatabase ${LANG_RUSSIAN} "Не удалось создать базу данных в каталоге $INSTDIR."
LangString NoDatabase ${LANG_ENGLISH} "No database could be made in $INSTDIR."
LangString No64Bit ${LANG_RUSSIAN} "Нужна 64-разрядная Windows."
LangString No64Bit ${LANG_ENGLISH} "64-bit Windows is needed."
LangString DataStays ${LANG_RUSSIAN} "База данных и ваши файлы остаются в каталоге $INSTDIR."
LangString DataStays ${LANG_ENGLISH} "The database and your files stay in $INSTDIR."

Function .onInit
    ${IfNot} ${RunningX64}
        MessageBox MB_ICONSTOP $(No64Bit)
        Abort
    ${EndIf}
    SetRegView 64
    ; An update goes where the last one went.
    ReadRegStr $0 HKLM "${UNINSTALL_KEY}" "InstallLocation"
    ${If} $0 != ""
        StrCpy $INSTDIR $0
    ${EndIf}
FunctionEnd

Function un.onInit
    SetRegView 64
FunctionEnd

Section
    ; A running program can't be opened for writing.
    ${If} ${FileExists} "$INSTDIR\zelvora.exe"
        ClearErrors
        FileOpen $0 "$INSTDIR\zelvora.exe" a
        ${If} ${Errors}
            MessageBox MB_ICONSTOP $(Running)
            Abort $(Running)
        ${EndIf}
        FileClose $0
    ${EndIf}

    SetOutPath "$INSTDIR"
    File /r "${STAGE}/*"
    File "/oname=LICENSE.txt" "../../LICENSE"
    ; The changes that this release brings to an existing database, if it brings any.
    File /nonfatal "../updates/dbUpdate.bin"

    ; The first database. A backup without a database is what a restore that broke off leaves: then
    ; the user decides.
    ${IfNot} ${FileExists} "$INSTDIR\docs.db"
    ${AndIfNot} ${FileExists} "$INSTDIR\docs_backup.db"
        CreateDirectory "$INSTDIR\blanks"
        CreateDirectory "$INSTDIR\templates"
        CreateDirectory "$INSTDIR\exports"
        CreateDirectory "$INSTDIR\imports"
        CreateDirectory "$INSTDIR\storage"
        nsExec::ExecToLog '"$INSTDIR\zelvora-db.exe" create "$INSTDIR\docs.db"'
        Pop $0
        ${If} $0 != "0"
            MessageBox MB_ICONEXCLAMATION $(NoDatabase)
        ${EndIf}
    ${EndIf}

    SetShellVarContext all
    CreateShortcut "$SMPROGRAMS\Zelvora.lnk" "$INSTDIR\zelvora.exe"

    WriteUninstaller "$INSTDIR\uninstall.exe"
    WriteRegStr HKLM "${UNINSTALL_KEY}" "DisplayName" "Zelvora"
    WriteRegStr HKLM "${UNINSTALL_KEY}" "DisplayVersion" "${VERSION}"
    WriteRegStr HKLM "${UNINSTALL_KEY}" "Publisher" "The Zelvora developers"
    WriteRegStr HKLM "${UNINSTALL_KEY}" "DisplayIcon" "$INSTDIR\zelvora.exe"
    WriteRegStr HKLM "${UNINSTALL_KEY}" "InstallLocation" "$INSTDIR"
    WriteRegStr HKLM "${UNINSTALL_KEY}" "UninstallString" '"$INSTDIR\uninstall.exe"'
    WriteRegDWORD HKLM "${UNINSTALL_KEY}" "NoModify" 1
    WriteRegDWORD HKLM "${UNINSTALL_KEY}" "NoRepair" 1
SectionEnd

Section "Uninstall"
    ; Programs and libraries; the directories of the user's files only if they are empty.
    Delete "$INSTDIR\*.exe"
    ${If} ${FileExists} "$INSTDIR\zelvora.exe"
        MessageBox MB_ICONSTOP $(Running)
        Abort $(Running)
    ${EndIf}
    Delete "$INSTDIR\*.dll"
    Delete "$INSTDIR\LICENSE.txt"
    RMDir /r "$INSTDIR\bearer"
    RMDir /r "$INSTDIR\iconengines"
    RMDir /r "$INSTDIR\imageformats"
    RMDir /r "$INSTDIR\platforms"
    RMDir /r "$INSTDIR\printsupport"
    RMDir /r "$INSTDIR\sqldrivers"
    RMDir /r "$INSTDIR\styles"
    RMDir "$INSTDIR\blanks"
    RMDir "$INSTDIR\templates"
    RMDir "$INSTDIR\exports"
    RMDir "$INSTDIR\imports"
    RMDir "$INSTDIR\storage"
    RMDir "$INSTDIR"

    SetShellVarContext all
    Delete "$SMPROGRAMS\Zelvora.lnk"
    DeleteRegKey HKLM "${UNINSTALL_KEY}"
    ${If} ${FileExists} "$INSTDIR\*"
        MessageBox MB_ICONINFORMATION $(DataStays)
    ${EndIf}
SectionEnd
