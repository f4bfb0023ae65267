<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de">
<context>
    <name>vlr</name>
    <message>
        <source>Open Veluria</source>
        <translation>Veluria öffnen</translation>
    </message>
    <message>
        <source>Quit Veluria</source>
        <translation>Veluria beenden</translation>
    </message>
    <message>
        <source>+ %@ more</source>
        <translation>+ %@ weitere</translation>
    </message>
    <message>
        <source>Open</source>
        <translation>Öffnen</translation>
    </message>
    <message>
        <source>Log in or out</source>
        <translation>An- oder abmelden</translation>
    </message>
    <message>
        <source>Show notifications</source>
        <translation>Benachrichtigungen anzeigen</translation>
    </message>
    <message>
        <source>Launch Veluria at startup</source>
        <translation>Veluria beim Systemstart öffnen</translation>
    </message>
    <message>
        <source>Automatically open assets after downloading</source>
        <translation>Heruntergeladene Assets automatisch öffnen</translation>
    </message>
    <message>
        <source>Limit download cache size to:</source>
        <translation>Download-Cache begrenzen auf:</translation>
    </message>
    <message>
        <source>MB</source>
        <translation>MB</translation>
    </message>
    <message>
        <source>Uninstall</source>
        <translation>Deinstallieren</translation>
    </message>
    <message>
        <source>Help</source>
        <translation>Hilfe</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>Beenden</translation>
    </message>
    <message>
        <source>Version: %@</source>
        <translation>Version: %@</translation>
    </message>
    <message>
        <source>Veluria is busy updating software...please stand by</source>
        <translation>Veluria aktualisiert gerade Software. Bitte warten Sie einen Moment.</translation>
    </message>
    <message>
        <source>Your password has changed!</source>
        <translation>Ihr Passwort wurde geändert!</translation>
    </message>
    <message>
        <source>The password for user &quot;%@&quot; has changed. Please sign in again.</source>
        <translation>Das Passwort des Benutzers „%@“ wurde geändert. Bitte melden Sie sich erneut an.</translation>
    </message>
    <message>
        <source>Communication error</source>
        <translation>Kommunikationsfehler</translation>
    </message>
    <message>
        <source>Veluria encountered a communication error. Please sign in again.</source>
        <translation>Bei Veluria ist ein Kommunikationsfehler aufgetreten. Bitte melden Sie sich erneut an.</translation>
    </message>
    <message>
        <source>Your download is ready!</source>
        <translation>Ihr Download ist fertig!</translation>
    </message>
    <message>
        <source>Error downloading project: &quot;%@&quot;</source>
        <translation>Fehler beim Herunterladen des Projekts „%@“</translation>
    </message>
    <message>
        <source>Error uploading project: &quot;%@&quot;</source>
        <translation>Fehler beim Hochladen des Projekts „%@“</translation>
    </message>
    <message>
        <source>Error processing download request</source>
        <translation>Fehler beim Verarbeiten der Download-Anfrage</translation>
    </message>
    <message>
        <source>Choose a location for this archive</source>
        <translation>Wählen Sie einen Speicherort für dieses Archiv</translation>
    </message>
    <message>
        <source>Can&apos;t set workspace location because user is not currently being asked to set the download location for any workspace.</source>
        <translation>Der Speicherort des Arbeitsbereichs kann nicht festgelegt werden, da derzeit für keinen Arbeitsbereich nach einem Download-Speicherort gefragt wird.</translation>
    </message>
    <message>
        <source>Error retrying upload</source>
        <translation>Fehler beim erneuten Hochladen</translation>
    </message>
    <message>
        <source>Error retrying download</source>
        <translation>Fehler beim erneuten Herunterladen</translation>
    </message>
    <message>
        <source>File not found</source>
        <translation>Datei nicht gefunden</translation>
    </message>
    <message>
        <source>Unable to locate the file: %@</source>
        <translation>Die Datei wurde nicht gefunden: %@</translation>
    </message>
    <message>
        <source>Two-step verification</source>
        <translation>Zweistufige Überprüfung</translation>
    </message>
    <message>
        <source>Enter the code that your authenticator app shows for your Veluria account.</source>
        <translation>Geben Sie den Code Ihrer Authenticator-App für Ihr Veluria-Konto ein.</translation>
    </message>
    <message>
        <source>Code</source>
        <translation>Code</translation>
    </message>
    <message>
        <source>Log in</source>
        <translation>Anmelden</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Sign in to Veluria</source>
        <translation>Bei Veluria anmelden</translation>
    </message>
    <message>
        <source>Use the email address and password of your Veluria account.</source>
        <translation>Verwenden Sie die E-Mail-Adresse und das Passwort Ihres Veluria-Kontos.</translation>
    </message>
    <message>
        <source>Email</source>
        <translation>E-Mail-Adresse</translation>
    </message>
    <message>
        <source>Password</source>
        <translation>Passwort</translation>
    </message>
    <message>
        <source>Forgot your password?</source>
        <translation>Passwort vergessen?</translation>
    </message>
    <message>
        <source>Enter your email.</source>
        <translation>Geben Sie Ihre E-Mail-Adresse ein.</translation>
    </message>
    <message>
        <source>Enter your password.</source>
        <translation>Geben Sie Ihr Passwort ein.</translation>
    </message>
    <message>
        <source>Less than a minute</source>
        <translation>Weniger als eine Minute</translation>
    </message>
    <message>
        <source>1 Minute</source>
        <translation>1 Minute</translation>
    </message>
    <message>
        <source>1 Hour</source>
        <translation>1 Stunde</translation>
    </message>
    <message>
        <source>TODAY</source>
        <translation>HEUTE</translation>
    </message>
    <message>
        <source>YESTERDAY</source>
        <translation>GESTERN</translation>
    </message>
    <message>
        <source>THIS WEEK</source>
        <translation>DIESE WOCHE</translation>
    </message>
    <message>
        <source>LAST WEEK</source>
        <translation>LETZTE WOCHE</translation>
    </message>
    <message>
        <source>EARLIER</source>
        <translation>FRÜHER</translation>
    </message>
    <message>
        <source>NEW</source>
        <translation>NEU</translation>
    </message>
    <message>
        <source>UPDATES</source>
        <translation>UPDATES</translation>
    </message>
    <message>
        <source>INSTALLED</source>
        <translation>INSTALLIERT</translation>
    </message>
    <message>
        <source>NOT INSTALLED</source>
        <translation>NICHT INSTALLIERT</translation>
    </message>
    <message>
        <source>PURCHASES</source>
        <translation>KÄUFE</translation>
    </message>
</context>
</TS>
