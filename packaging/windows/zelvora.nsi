; The installer of Zelvora for 64-bit Windows, made by scripts/make-windows-package. It is given
;   VERSION  four dotted numbers
;   STAGE    a directory with all that is installed, and nothing else
;   LISTS    a directory with menu.nsh and files.nsh, see there
;   OUTPUT   the installer to make
;
; The other files are found from the directory of this script.
;
; The application keeps its database beside its executable. Whatever is done here, docs.db and what
; the user keeps beside it are neither replaced nor removed.

; The installer is a program of 64 bits like what it installs.
Target amd64-unicode
RequestExecutionLevel admin
SetCompressor /SOLID lzma

!include FileFunc.nsh
!include LogicLib.nsh
!include MUI2.nsh
!include Sections.nsh
; Macros that the package's script makes from what is in the package: MENU_ENTRIES and
; REMOVE_MENU_ENTRIES, REMOVE_FILES.
!include "${LISTS}/menu.nsh"
!include "${LISTS}/files.nsh"

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
!insertmacro MUI_PAGE_COMPONENTS
!insertmacro MUI_PAGE_INSTFILES
!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_LANGUAGE "Russian"
!insertmacro MUI_LANGUAGE "English"

LangString Running ${LANG_RUSSIAN} "Закройте программу Zelvora и повторите."
LangString Running ${LANG_ENGLISH} "Close Zelvora and try again."
LangString NoDatabase ${LANG_RUSSIAN} "Не удалось создать базу данных в каталоге $INSTDIR."
LangString NoDatabase ${LANG_ENGLISH} "No database could be made in $INSTDIR."
LangString NotRemoved ${LANG_RUSSIAN} "Не удалось удалить прежнюю версию из каталога $INSTDIR."
LangString NotRemoved ${LANG_ENGLISH} "The former version could not be removed from $INSTDIR."
LangString Program ${LANG_RUSSIAN} "Программа"
LangString Program ${LANG_ENGLISH} "Program"
LangString Sample ${LANG_RUSSIAN} "Учебный пример"
LangString Sample ${LANG_ENGLISH} "Sample"
LangString AboutProgram ${LANG_RUSSIAN} "Программа, руководство и пустая база данных, если её ещё нет."
LangString AboutProgram ${LANG_ENGLISH} "The program, its guide, and an empty database if there is none."
LangString AboutSample ${LANG_RUSSIAN} "Вместо пустой базы данных — формы, бланки и двести документов с вымышленными именами. Существующая база данных остаётся."
LangString AboutSample ${LANG_ENGLISH} "Forms, blanks and two hundred documents with invented names in the place of an empty database. An existing database stays."
LangString Guide ${LANG_RUSSIAN} "Zelvora: руководство"
LangString Guide ${LANG_ENGLISH} "Zelvora guide"
LangString DataStays ${LANG_RUSSIAN} "База данных и ваши файлы остаются в каталоге $INSTDIR."
LangString DataStays ${LANG_ENGLISH} "The database and your files stay in $INSTDIR."

Function un.onInit
    SetRegView 64
FunctionEnd

; Leaves the section with a message if the application is running: its file can't be opened for
; writing then.
!macro STOP_IF_RUNNING
    ${If} ${FileExists} "$INSTDIR\zelvora.exe"
        ClearErrors
        FileOpen $0 "$INSTDIR\zelvora.exe" a
        ${If} ${Errors}
            MessageBox MB_ICONSTOP $(Running) /SD IDOK
            SetErrorLevel 2
            Abort $(Running)
        ${EndIf}
        FileClose $0
    ${EndIf}
!macroend

; What a former version installed goes with its own list of files, so that nothing of it is left.
Function RemoveFormerVersion
    ${If} ${FileExists} "$INSTDIR\uninstall.exe"
        ExecWait '"$INSTDIR\uninstall.exe" /S /UPGRADE _?=$INSTDIR' $0
        ${If} $0 != "0"
            MessageBox MB_ICONSTOP $(NotRemoved) /SD IDOK
            SetErrorLevel 2
            Abort $(NotRemoved)
        ${EndIf}
    ${EndIf}
FunctionEnd

; The application runs with the administrators' rights and loads what stands beside it, so that nobody
; else may put anything there. Below "Program Files" that is so. Elsewhere a directory takes over what
; holds for the whole disk, which lets every user write; a directory that is made here gets the rights
; of "Program Files": administrators and the system all, users reading and running.
Function MakeDirectory
    ${If} ${FileExists} "$INSTDIR\*.*"
        Return
    ${EndIf}
    CreateDirectory "$INSTDIR"
    StrLen $0 "$PROGRAMFILES64\"
    StrCpy $1 "$INSTDIR" $0
    ${If} $1 == "$PROGRAMFILES64\"
        Return
    ${EndIf}
    nsExec::ExecToLog '"$SYSDIR\icacls.exe" "$INSTDIR" /inheritance:r /grant:r *S-1-5-32-544:(OI)(CI)F *S-1-5-18:(OI)(CI)F *S-1-5-32-545:(OI)(CI)RX'
    Pop $0
FunctionEnd

Section "$(Program)" ProgramSection
    SectionIn RO
    !insertmacro STOP_IF_RUNNING
    Call RemoveFormerVersion
    Call MakeDirectory

    SetOutPath "$INSTDIR"
    File /r "${STAGE}/*"
    ; The changes that this release brings to an existing database, if it brings any.
    File /nonfatal "../updates/dbUpdate.bin"

    SetShellVarContext all
    !insertmacro MENU_ENTRIES
    CreateShortcut "$SMPROGRAMS\$(Guide).lnk" "$INSTDIR\guide\index.html"

    WriteUninstaller "$INSTDIR\uninstall.exe"
    WriteRegStr HKLM "${UNINSTALL_KEY}" "DisplayName" "Zelvora"
    WriteRegStr HKLM "${UNINSTALL_KEY}" "DisplayVersion" "${VERSION}"
    WriteRegStr HKLM "${UNINSTALL_KEY}" "Publisher" "The Zelvora developers"
    WriteRegStr HKLM "${UNINSTALL_KEY}" "DisplayIcon" "$INSTDIR\zelvora.exe"
    WriteRegStr HKLM "${UNINSTALL_KEY}" "InstallLocation" "$INSTDIR"
    WriteRegStr HKLM "${UNINSTALL_KEY}" "UninstallString" '"$INSTDIR\uninstall.exe"'
    WriteRegStr HKLM "${UNINSTALL_KEY}" "QuietUninstallString" '"$INSTDIR\uninstall.exe" /S'
    WriteRegDWORD HKLM "${UNINSTALL_KEY}" "NoModify" 1
    WriteRegDWORD HKLM "${UNINSTALL_KEY}" "NoRepair" 1
SectionEnd

; Chosen by the user, or with /SAMPLE in a silent run.
Section /o "$(Sample)" SampleSection
SectionEnd

; The first database. A backup without a database is what a restore that broke off leaves: then the
; user decides.
Section
    ${If} ${FileExists} "$INSTDIR\docs.db"
    ${OrIf} ${FileExists} "$INSTDIR\docs_backup.db"
        Return
    ${EndIf}
    CreateDirectory "$INSTDIR\blanks"
    CreateDirectory "$INSTDIR\templates"
    CreateDirectory "$INSTDIR\exports"
    CreateDirectory "$INSTDIR\imports"
    CreateDirectory "$INSTDIR\storage"
    ${If} ${SectionIsSelected} ${SampleSection}
        nsExec::ExecToLog '"$INSTDIR\zelvora-db.exe" sample "$INSTDIR"'
    ${Else}
        nsExec::ExecToLog '"$INSTDIR\zelvora-db.exe" create "$INSTDIR\docs.db"'
    ${EndIf}
    Pop $0
    ${If} $0 != "0"
        MessageBox MB_ICONEXCLAMATION $(NoDatabase) /SD IDOK
    ${EndIf}
SectionEnd

!insertmacro MUI_FUNCTION_DESCRIPTION_BEGIN
!insertmacro MUI_DESCRIPTION_TEXT ${ProgramSection} $(AboutProgram)
!insertmacro MUI_DESCRIPTION_TEXT ${SampleSection} $(AboutSample)
!insertmacro MUI_FUNCTION_DESCRIPTION_END

Function .onInit
    SetRegView 64
    ; An update goes where the last one went, unless another directory was given.
    ReadRegStr $0 HKLM "${UNINSTALL_KEY}" "InstallLocation"
    ${If} $0 != ""
    ${AndIf} $INSTDIR == "$PROGRAMFILES64\Zelvora"
        StrCpy $INSTDIR $0
    ${EndIf}
    ${GetParameters} $1
    ClearErrors
    ${GetOptions} $1 "/SAMPLE" $2
    ${IfNot} ${Errors}
        !insertmacro SelectSection ${SampleSection}
    ${EndIf}
FunctionEnd

Section "Uninstall"
    ; What was installed, by its list; the directories of the user's files only if they are empty.
    !insertmacro STOP_IF_RUNNING
    !insertmacro REMOVE_FILES
    Delete "$INSTDIR\uninstall.exe"
    ; Changes that wait for the application's next start are for the next version too.
    ${GetParameters} $1
    ClearErrors
    ${GetOptions} $1 "/UPGRADE" $2
    ${If} ${Errors}
        Delete "$INSTDIR\dbUpdate.bin"
    ${EndIf}
    RMDir "$INSTDIR\blanks"
    RMDir "$INSTDIR\templates"
    RMDir "$INSTDIR\exports"
    RMDir "$INSTDIR\imports"
    RMDir "$INSTDIR\storage"
    SetOutPath "$TEMP" ; a directory that is the current one can't be removed
    RMDir "$INSTDIR"

    SetShellVarContext all
    !insertmacro REMOVE_MENU_ENTRIES
    Delete "$SMPROGRAMS\$(Guide).lnk"
    DeleteRegKey HKLM "${UNINSTALL_KEY}"
    ${If} ${FileExists} "$INSTDIR\*"
        MessageBox MB_ICONINFORMATION $(DataStays) /SD IDOK
    ${EndIf}
SectionEnd
