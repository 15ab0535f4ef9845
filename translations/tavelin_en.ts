<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en" sourcelanguage="en">
<context>
    <name>QlumCertificateManager</name>
    <message numerus="yes">
        <source>
Its file holds %n certificates, which are all deleted.</source>
        <translation>
            <numerusform>
Its file holds %n certificate, which is deleted.</numerusform>
            <numerusform>
Its file holds %n certificates, which are all deleted.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>The file holds %n certificates, which all become trusted.
Do you want to trust all of them?</source>
        <translation>
            <numerusform>The file holds %n certificate, which becomes trusted.
Do you want to trust it?</numerusform>
            <numerusform>The file holds %n certificates, which all become trusted.
Do you want to trust all of them?</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>QlumCertificates</name>
    <message numerus="yes">
        <source>Tavelin&apos;s certificate will expire in %n days!
Do you want to create a new one?</source>
        <translation>
            <numerusform>Tavelin&apos;s certificate will expire in %n day!
Do you want to create a new one?</numerusform>
            <numerusform>Tavelin&apos;s certificate will expire in %n days!
Do you want to create a new one?</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>QlumChangeLogPart</name>
    <message numerus="yes">
        <source>%n row(s) are not logged.</source>
        <translation>
            <numerusform>%n row is not logged.</numerusform>
            <numerusform>%n rows are not logged.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n row(s) logged</source>
        <translation>
            <numerusform>%n row logged</numerusform>
            <numerusform>%n rows logged</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>QlumDaFilter</name>
    <message numerus="yes">
        <source>%1 (%n row(s))</source>
        <translation>
            <numerusform>%1 (%n row)</numerusform>
            <numerusform>%1 (%n rows)</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>QlumDaVerdict</name>
    <message numerus="yes">
        <source>%n message(s) lost</source>
        <translation>
            <numerusform>%n message lost</numerusform>
            <numerusform>%n messages lost</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n overflow(s)</source>
        <translation>
            <numerusform>%n overflow</numerusform>
            <numerusform>%n overflows</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>QlumDaView</name>
    <message numerus="yes">
        <source>%1 did not take the new settings of %n row(s).</source>
        <translation>
            <numerusform>%1 did not take the new settings of %n row.</numerusform>
            <numerusform>%1 did not take the new settings of %n rows.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%1 does not watch %n row(s).</source>
        <translation>
            <numerusform>%1 does not watch %n row.</numerusform>
            <numerusform>%1 does not watch %n rows.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n node(s) have a row already.</source>
        <translation>
            <numerusform>%n node has a row already.</numerusform>
            <numerusform>%n nodes have a row already.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n row(s)</source>
        <translation>
            <numerusform>%n row</numerusform>
            <numerusform>%n rows</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n row(s) of the project were not taken.</source>
        <translation>
            <numerusform>%n row of the project was not taken.</numerusform>
            <numerusform>%n rows of the project were not taken.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n row(s); what is not touched stays as each of them has it</source>
        <translation>
            <numerusform>%n row; what is not touched stays as each of them has it</numerusform>
            <numerusform>%n rows; what is not touched stays as each of them has it</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>QlumDiscoveryModel</name>
    <message numerus="yes">
        <source>%n server(s)</source>
        <translation>
            <numerusform>%n server</numerusform>
            <numerusform>%n servers</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>QlumDoctor</name>
    <message numerus="yes">
        <source>%n days</source>
        <translation>
            <numerusform>%n day</numerusform>
            <numerusform>%n days</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n endpoints; &apos;%1&apos; is among them</source>
        <translation>
            <numerusform>%n endpoint; &apos;%1&apos; is among them</numerusform>
            <numerusform>%n endpoints; &apos;%1&apos; is among them</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n hours</source>
        <translation>
            <numerusform>%n hour</numerusform>
            <numerusform>%n hours</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n minutes</source>
        <translation>
            <numerusform>%n minute</numerusform>
            <numerusform>%n minutes</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n seconds</source>
        <translation>
            <numerusform>%n second</numerusform>
            <numerusform>%n seconds</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>QlumEventWidget</name>
    <message numerus="yes">
        <source>%n history(s) could not be read.</source>
        <translation>
            <numerusform>%n history could not be read.</numerusform>
            <numerusform>%n histories could not be read.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>QlumFindNodeView</name>
    <message numerus="yes">
        <source>%1, %n call(s) not answered in time</source>
        <translation>
            <numerusform>%1, %n call not answered in time</numerusform>
            <numerusform>%1, %n calls not answered in time</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln node(s) found</source>
        <translation>
            <numerusform>%Ln node found</numerusform>
            <numerusform>%Ln nodes found</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln node(s) of the server seen</source>
        <translation>
            <numerusform>%Ln node of the server seen</numerusform>
            <numerusform>%Ln nodes of the server seen</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln to look below</source>
        <translation>
            <numerusform>%Ln to look below</numerusform>
            <numerusform>%Ln to look below</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Of %n node(s) the server did not tell what is below.</source>
        <translation>
            <numerusform>Of %n node the server did not tell what is below.</numerusform>
            <numerusform>Of %n nodes the server did not tell what is below.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>The expression was given up on %n text(s).</source>
        <translation>
            <numerusform>The expression was given up on %n text.</numerusform>
            <numerusform>The expression was given up on %n texts.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>QlumImageHeader</name>
    <message numerus="yes">
        <source>%n component(s)</source>
        <translation>
            <numerusform>%n component</numerusform>
            <numerusform>%n components</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>QlumImageView</name>
    <message numerus="yes">
        <source>%n image(s) of this view were left out.</source>
        <translation>
            <numerusform>%n image of this view was left out.</numerusform>
            <numerusform>%n images of this view were left out.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>QlumJournalWindow</name>
    <message numerus="yes">
        <source>%1 of %n change(s)</source>
        <translation>
            <numerusform>%1 of %n change</numerusform>
            <numerusform>%1 of %n changes</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n line(s) cannot be read.</source>
        <translation>
            <numerusform>%n line cannot be read.</numerusform>
            <numerusform>%n lines cannot be read.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n older change(s) are in the file only.</source>
        <translation>
            <numerusform>%n older change is in the file only.</numerusform>
            <numerusform>%n older changes are in the file only.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>QlumListPart</name>
    <message numerus="yes">
        <source>%n row(s) were added.</source>
        <translation>
            <numerusform>%n row was added.</numerusform>
            <numerusform>%n rows were added.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>QlumLoggerPanel</name>
    <message numerus="yes">
        <source>Recording, without connection for %n item(s)</source>
        <translation>
            <numerusform>Recording, without connection for %n item</numerusform>
            <numerusform>Recording, without connection for %n items</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>QlumLoggerView</name>
    <message numerus="yes">
        <source>%n item(s)</source>
        <translation>
            <numerusform>%n item</numerusform>
            <numerusform>%n items</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n item(s); what is not touched stays as each of them has it</source>
        <translation>
            <numerusform>%n item; what is not touched stays as each of them has it</numerusform>
            <numerusform>%n items; what is not touched stays as each of them has it</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>QlumMeasurer</name>
    <message numerus="yes">
        <source>%n value(s) came with a bad status.</source>
        <translation>
            <numerusform>%n value came with a bad status.</numerusform>
            <numerusform>%n values came with a bad status.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>QlumMethodWords</name>
    <message numerus="yes">
        <source>%n argument(s) were sent. The server wants another number than its description says: add arguments, or remove some, and call again.</source>
        <translation>
            <numerusform>%n argument was sent. The server wants another number than its description says: add arguments, or remove some, and call again.</numerusform>
            <numerusform>%n arguments were sent. The server wants another number than its description says: add arguments, or remove some, and call again.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>QlumNotificationRun</name>
    <message numerus="yes">
        <source>%n value(s) had no time stamp of the server and are left out.</source>
        <translation>
            <numerusform>%n value had no time stamp of the server and is left out.</numerusform>
            <numerusform>%n values had no time stamp of the server and are left out.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>The server does not watch %n of the nodes.</source>
        <translation>
            <numerusform>The server does not watch %n of the nodes.</numerusform>
            <numerusform>The server does not watch %n of the nodes.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>QlumPerformanceView</name>
    <message numerus="yes">
        <source>%n endpoint(s) could not be measured.</source>
        <translation>
            <numerusform>%n endpoint could not be measured.</numerusform>
            <numerusform>%n endpoints could not be measured.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n method(s) cannot be called and are left out; see the details.</source>
        <translation>
            <numerusform>%n method cannot be called and is left out; see the details.</numerusform>
            <numerusform>%n methods cannot be called and are left out; see the details.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n node(s) cannot be written and are left out; see the details.</source>
        <translation>
            <numerusform>%n node cannot be written and is left out; see the details.</numerusform>
            <numerusform>%n nodes cannot be written and are left out; see the details.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n node(s) of this view were left out.</source>
        <translation>
            <numerusform>%n node of this view was left out.</numerusform>
            <numerusform>%n nodes of this view were left out.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>The run writes to %n variable(s) of %1, %2.</source>
        <translation>
            <numerusform>The run writes to %n variable of %1, %2.</numerusform>
            <numerusform>The run writes to %n variables of %1, %2.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>for %n second(s)</source>
        <translation>
            <numerusform>for %n second</numerusform>
            <numerusform>for %n seconds</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>QlumRecordingWindow</name>
    <message numerus="yes">
        <source>%1: %2 records of %n item(s); %3.</source>
        <translation>
            <numerusform>%1: %2 records of %n item; %3.</numerusform>
            <numerusform>%1: %2 records of %n items; %3.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n event(s) say that something may be missing</source>
        <translation>
            <numerusform>%n event says that something may be missing</numerusform>
            <numerusform>%n events say that something may be missing</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>QlumSecretFields</name>
    <message numerus="yes">
        <source>(%n byte(s))</source>
        <translation>
            <numerusform>(%n byte)</numerusform>
            <numerusform>(%n bytes)</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>QlumServerDiagnosticWidget</name>
    <message numerus="yes">
        <source>%n bytes: %1%2</source>
        <translation>
            <numerusform>%n byte: %1%2</numerusform>
            <numerusform>%n bytes: %1%2</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n elements of the server&apos;s list of secured sessions are something else.</source>
        <translation>
            <numerusform>%n element of the server&apos;s list of secured sessions is something else.</numerusform>
            <numerusform>%n elements of the server&apos;s list of secured sessions are something else.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n elements of the server&apos;s list of sessions are something else.</source>
        <translation>
            <numerusform>%n element of the server&apos;s list of sessions is something else.</numerusform>
            <numerusform>%n elements of the server&apos;s list of sessions are something else.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>QlumServerPage</name>
    <message numerus="yes">
        <source>The server offers %n endpoint(s).</source>
        <translation>
            <numerusform>The server offers %n endpoint.</numerusform>
            <numerusform>The server offers %n endpoints.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>QlumServicesView</name>
    <message numerus="yes">
        <source>, %n event(s) came too fast</source>
        <translation>
            <numerusform>, %n event came too fast</numerusform>
            <numerusform>, %n events came too fast</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>QlumSnapshotPart</name>
    <message numerus="yes">
        <source>%n snapshot(s) are not kept with the project: %1.</source>
        <translation>
            <numerusform>%n snapshot is not kept with the project: %1.</numerusform>
            <numerusform>%n snapshots are not kept with the project: %1.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n value(s) of the snapshot cannot be read.</source>
        <translation>
            <numerusform>%n value of the snapshot cannot be read.</numerusform>
            <numerusform>%n values of the snapshot cannot be read.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>QlumStagedPage</name>
    <message numerus="yes">
        <source>%n staged</source>
        <translation>
            <numerusform>%n staged</numerusform>
            <numerusform>%n staged</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>, %n cannot be sent</source>
        <translation>
            <numerusform>, %n cannot be sent</numerusform>
            <numerusform>, %n cannot be sent</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>, %n refused by the checks</source>
        <translation>
            <numerusform>, %n refused by the checks</numerusform>
            <numerusform>, %n refused by the checks</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>QlumStagedPart</name>
    <message numerus="yes">
        <source>%n staged value(s) are not kept with the project.</source>
        <translation>
            <numerusform>%n staged value is not kept with the project.</numerusform>
            <numerusform>%n staged values are not kept with the project.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n staged value(s) were held back by the checks.</source>
        <translation>
            <numerusform>%n staged value was held back by the checks.</numerusform>
            <numerusform>%n staged values were held back by the checks.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n value(s) had no row to go to.</source>
        <translation>
            <numerusform>%n value had no row to go to.</numerusform>
            <numerusform>%n values had no row to go to.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>New value of the %n selected row(s):</source>
        <translation>
            <numerusform>New value of the %n selected row:</numerusform>
            <numerusform>New value of the %n selected rows:</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>QlumStorePage</name>
    <message numerus="yes">
        <source>%1 of %Ln entries</source>
        <translation>
            <numerusform>%1 of %Ln entry</numerusform>
            <numerusform>%1 of %Ln entries</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln entries</source>
        <translation>
            <numerusform>%Ln entry</numerusform>
            <numerusform>%Ln entries</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln entries; reading was cancelled</source>
        <translation>
            <numerusform>%Ln entry; reading was cancelled</numerusform>
            <numerusform>%Ln entries; reading was cancelled</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>QlumStructureTree</name>
    <message numerus="yes">
        <source>%1, %n byte(s)</source>
        <translation>
            <numerusform>%1, %n byte</numerusform>
            <numerusform>%1, %n bytes</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>QlumTrendReading</name>
    <message numerus="yes">
        <source>Looking at %n node(s)</source>
        <translation>
            <numerusform>Looking at %n node</numerusform>
            <numerusform>Looking at %n nodes</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>QlumTrendViewDocument</name>
    <message numerus="yes">
        <source>%n curve(s) could not be read to the end.</source>
        <translation>
            <numerusform>%n curve could not be read to the end.</numerusform>
            <numerusform>%n curves could not be read to the end.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n nodes are to be added at once.</source>
        <translation>
            <numerusform>%n node is to be added at once.</numerusform>
            <numerusform>%n nodes are to be added at once.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n pixel(s)</source>
        <translation>
            <numerusform>%n pixel</numerusform>
            <numerusform>%n pixels</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n values</source>
        <translation>
            <numerusform>%n value</numerusform>
            <numerusform>%n values</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n variable(s) could not be read to the end; the log says more.</source>
        <translation>
            <numerusform>%n variable could not be read to the end; the log says more.</numerusform>
            <numerusform>%n variables could not be read to the end; the log says more.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n variable(s) of this view were left out.</source>
        <translation>
            <numerusform>%n variable of this view was left out.</numerusform>
            <numerusform>%n variables of this view were left out.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>; %n update(s) skipped</source>
        <translation>
            <numerusform>; %n update skipped</numerusform>
            <numerusform>; %n updates skipped</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>QlumVariableIntake</name>
    <message numerus="yes">
        <source>Below &quot;%1&quot; are %n variable(s).</source>
        <translation>
            <numerusform>Below &quot;%1&quot; is %n variable.</numerusform>
            <numerusform>Below &quot;%1&quot; are %n variables.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>QlumWorkIndicator</name>
    <message numerus="yes">
        <source>%n running</source>
        <translation>
            <numerusform>%n running</numerusform>
            <numerusform>%n running</numerusform>
        </translation>
    </message>
</context>
</TS>
