<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en" sourcelanguage="en">
<context>
    <name>DatabaseCheck</name>
    <message numerus="yes">
        <source>%n rows where one is expected</source>
        <translation>
            <numerusform>%n rows where one is expected</numerusform>
            <numerusform>%n rows where one is expected</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>DatabaseTool</name>
    <message numerus="yes">
        <source>Findings: %n</source>
        <translation>
            <numerusform>Findings: %n</numerusform>
            <numerusform>Findings: %n</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>FindingWords</name>
    <message numerus="yes">
        <source>and %n more</source>
        <translation>
            <numerusform>and %n more</numerusform>
            <numerusform>and %n more</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>PrintJob</name>
    <message numerus="yes">
        <source>interrupted; documents printed: %n</source>
        <translation>
            <numerusform>interrupted; documents printed: %n</numerusform>
            <numerusform>interrupted; documents printed: %n</numerusform>
        </translation>
    </message>
</context>
</TS>
