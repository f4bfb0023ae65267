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
    <message>
        <source>Installation complete!</source>
        <translation>Installation abgeschlossen!</translation>
    </message>
    <message>
        <source>%@ has been successfully installed.</source>
        <translation>%@ wurde erfolgreich installiert.</translation>
    </message>
    <message>
        <source>Latest: %@</source>
        <translation>Neueste: %@</translation>
    </message>
    <message>
        <source>Thank You!</source>
        <translation>Vielen Dank!</translation>
    </message>
    <message>
        <source>Your new purchase is available for download</source>
        <translation>Ihr neuer Kauf steht zum Herunterladen bereit</translation>
    </message>
    <message>
        <source>Your new purchases are available for download</source>
        <translation>Ihre neuen Käufe stehen zum Herunterladen bereit</translation>
    </message>
    <message>
        <source>Update Available</source>
        <translation>Update verfügbar</translation>
    </message>
    <message>
        <source>%@ has an update</source>
        <translation>Für %@ gibt es ein Update</translation>
    </message>
    <message>
        <source>Updates Available</source>
        <translation>Updates verfügbar</translation>
    </message>
    <message>
        <source>You have some updates in your Veluria account</source>
        <translation>In Ihrem Veluria-Konto warten Updates</translation>
    </message>
    <message>
        <source>Your credit card has expired!</source>
        <translation>Ihre Kreditkarte ist abgelaufen!</translation>
    </message>
    <message>
        <source>Your credit card is about to expire!</source>
        <translation>Ihre Kreditkarte läuft bald ab!</translation>
    </message>
    <message>
        <source>Click here to update it.</source>
        <translation>Klicken Sie hier, um sie zu aktualisieren.</translation>
    </message>
    <message>
        <source>Your credit card has expired.</source>
        <translation>Ihre Kreditkarte ist abgelaufen.</translation>
    </message>
    <message>
        <source>Your credit card is about to expire.</source>
        <translation>Ihre Kreditkarte läuft bald ab.</translation>
    </message>
    <message>
        <source>EXPIRED</source>
        <translation>ABGELAUFEN</translation>
    </message>
    <message>
        <source>Expires: </source>
        <translation>Läuft ab: </translation>
    </message>
    <message>
        <source>Renews: </source>
        <translation>Verlängert sich: </translation>
    </message>
    <message>
        <source>it has no &quot;name&quot;</source>
        <translation>ihr fehlt &quot;name&quot;</translation>
    </message>
    <message>
        <source>&quot;file_urls&quot; is not a list of paths</source>
        <translation>&quot;file_urls&quot; ist keine Liste von Pfaden</translation>
    </message>
    <message>
        <source>&quot;silent_install&quot; is not a number</source>
        <translation>&quot;silent_install&quot; ist keine Zahl</translation>
    </message>
    <message>
        <source>&quot;image_url&quot; is not an address</source>
        <translation>&quot;image_url&quot; ist keine Adresse</translation>
    </message>
    <message>
        <source>it is not a JSON object</source>
        <translation>sie ist kein JSON-Objekt</translation>
    </message>
    <message>
        <source>The installer description can&apos;t be used: %@</source>
        <translation>Die Beschreibung des Installationsprogramms ist unbrauchbar: %@</translation>
    </message>
    <message>
        <source>File Drop</source>
        <translation>Ablage</translation>
    </message>
    <message>
        <source>Workspaces</source>
        <translation>Arbeitsbereiche</translation>
    </message>
    <message>
        <source>Marketplace</source>
        <translation>Marktplatz</translation>
    </message>
    <message>
        <source>Transfers</source>
        <translation>Übertragungen</translation>
    </message>
    <message>
        <source>Preferences</source>
        <translation>Einstellungen</translation>
    </message>
    <message>
        <source>This version of Veluria is no longer supported.</source>
        <translation>Diese Version von Veluria wird nicht mehr unterstützt.</translation>
    </message>
    <message>
        <source>A newer version of Veluria is available.</source>
        <translation>Eine neuere Version von Veluria ist verfügbar.</translation>
    </message>
    <message>
        <source>Please download the latest version. (%@)</source>
        <translation>Bitte laden Sie die neueste Version herunter. (%@)</translation>
    </message>
    <message>
        <source>Logout</source>
        <translation>Abmelden</translation>
    </message>
    <message>
        <source>Remind Me Later</source>
        <translation>Später erinnern</translation>
    </message>
    <message>
        <source>Install Update</source>
        <translation>Update installieren</translation>
    </message>
    <message>
        <source>Can&apos;t find installer app at &quot;%@&quot;</source>
        <translation>Das Installationsprogramm wurde unter &quot;%@&quot; nicht gefunden</translation>
    </message>
    <message>
        <source>Error updating Veluria</source>
        <translation>Fehler beim Aktualisieren von Veluria</translation>
    </message>
    <message>
        <source>Pause All</source>
        <translation>Alle anhalten</translation>
    </message>
    <message>
        <source>Clear Completed</source>
        <translation>Abgeschlossene entfernen</translation>
    </message>
    <message>
        <source>Resume All</source>
        <translation>Alle fortsetzen</translation>
    </message>
    <message>
        <source>Uploads</source>
        <translation>Uploads</translation>
    </message>
    <message>
        <source>Downloads</source>
        <translation>Downloads</translation>
    </message>
    <message>
        <source>Completed</source>
        <translation>Abgeschlossen</translation>
    </message>
    <message>
        <source>Resend confirmation e-mail</source>
        <translation>Bestätigungs-E-Mail erneut senden</translation>
    </message>
    <message>
        <source>Software Update</source>
        <translation>Softwareaktualisierung</translation>
    </message>
    <message>
        <source>Release Notes:</source>
        <translation>Versionshinweise:</translation>
    </message>
    <message>
        <source>Terms of Service</source>
        <translation>Nutzungsbedingungen</translation>
    </message>
    <message>
        <source>Disagree</source>
        <translation>Ablehnen</translation>
    </message>
    <message>
        <source>Agree</source>
        <translation>Zustimmen</translation>
    </message>
    <message>
        <source>Add files</source>
        <translation>Dateien hinzufügen</translation>
    </message>
    <message>
        <source>Workspace</source>
        <translation>Arbeitsbereich</translation>
    </message>
    <message>
        <source>Name of the new workspace</source>
        <translation>Name des neuen Arbeitsbereichs</translation>
    </message>
    <message>
        <source>Comment</source>
        <translation>Kommentar</translation>
    </message>
    <message>
        <source>Say something about these files</source>
        <translation>Schreiben Sie etwas zu diesen Dateien</translation>
    </message>
    <message>
        <source>Resend the confirmation e-mail</source>
        <translation>Bestätigungs-E-Mail erneut senden</translation>
    </message>
    <message>
        <source>Create workspace</source>
        <translation>Arbeitsbereich erstellen</translation>
    </message>
    <message>
        <source>Archive</source>
        <translation>Archivieren</translation>
    </message>
    <message>
        <source>Publish</source>
        <translation>Veröffentlichen</translation>
    </message>
    <message>
        <source>Error publishing to &quot;%@&quot;</source>
        <translation>Fehler beim Veröffentlichen in &quot;%@&quot;</translation>
    </message>
    <message>
        <source>Error creating workspace &quot;%@&quot;</source>
        <translation>Fehler beim Erstellen des Arbeitsbereichs &quot;%@&quot;</translation>
    </message>
    <message>
        <source>Choose a file to add to a workspace</source>
        <translation>Wählen Sie eine Datei für einen Arbeitsbereich</translation>
    </message>
    <message>
        <source>Open workspace</source>
        <translation>Arbeitsbereich öffnen</translation>
    </message>
    <message>
        <source>Last updated</source>
        <translation>Zuletzt geändert</translation>
    </message>
    <message>
        <source>Create a workspace</source>
        <translation>Einen Arbeitsbereich erstellen</translation>
    </message>
    <message>
        <source>Learn about workspaces</source>
        <translation>Mehr über Arbeitsbereiche</translation>
    </message>
</context>
</TS>
