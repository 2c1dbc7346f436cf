<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en" sourcelanguage="en">
<context>
    <name>TavError</name>
    <message>
        <source>description1</source>
        <translation>Vandrel cannot read this document.</translation>
    </message>
    <message>
        <source>failureReason1</source>
        <translation>The file is empty or damaged, or it is not a Vandrel snapshot.</translation>
    </message>
    <message>
        <source>description2</source>
        <translation>This document is too old for this version of Vandrel.</translation>
    </message>
    <message>
        <source>failureReason2</source>
        <translation>It was saved by an early version, in a form that is no longer read. Only the version that saved it can open it.</translation>
    </message>
    <message>
        <source>description3</source>
        <translation>This document needs a newer version of Vandrel.</translation>
    </message>
    <message>
        <source>failureReason3</source>
        <translation>It was saved by a newer version, in a form that this one does not know. Update Vandrel to open it.</translation>
    </message>
</context>
</TS>
