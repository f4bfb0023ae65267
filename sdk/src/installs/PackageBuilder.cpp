#include "sdk/installs/PackageBuilder.h"

#include <QFile>

#include <archive.h>
#include <archive_entry.h>

bool PackageBuilder::write(const QString& path, const QList<Entry>& entries, QString* failure)
{
    archive* writer = archive_write_new();
    if (path.endsWith(QLatin1String(".zip"))) {
        archive_write_set_format_zip(writer);
    } else {
        path.endsWith(QLatin1String(".tar.xz")) ? archive_write_add_filter_xz(writer)
                                                : archive_write_add_filter_gzip(writer);
        archive_write_set_format_pax_restricted(writer);
    }
    bool written = archive_write_open_filename(writer, QFile::encodeName(path).constData()) == ARCHIVE_OK;
    for (const Entry& entry : entries) {
        if (!written)
            break;
        archive_entry* header = archive_entry_new();
        archive_entry_set_pathname(header, entry.name.toUtf8().constData());
        archive_entry_set_perm(header, entry.mode);
        if (!entry.linkTarget.isEmpty()) {
            archive_entry_set_filetype(header, AE_IFLNK);
            archive_entry_set_symlink(header, entry.linkTarget.toUtf8().constData());
        } else {
            archive_entry_set_filetype(header, entry.folder ? AE_IFDIR : AE_IFREG);
            archive_entry_set_size(header, entry.folder ? 0 : entry.content.size());
        }
        written = archive_write_header(writer, header) == ARCHIVE_OK
            && (entry.content.isEmpty()
                || archive_write_data(writer, entry.content.constData(), size_t(entry.content.size()))
                    == entry.content.size());
        archive_entry_free(header);
    }
    written = archive_write_close(writer) == ARCHIVE_OK && written;
    if (!written && failure)
        *failure = QString::fromUtf8(archive_error_string(writer));
    archive_write_free(writer);
    return written;
}

QList<PackageBuilder::Entry> PackageBuilder::demoApplication(const QString& command, const QString& title,
                                                             const QString& version)
{
    const QByteArray script = QStringLiteral("#!/bin/sh\n# %1 %2, a demo application of the Veluria marketplace.\n"
                                             "exec xdg-open \"$(dirname \"$0\")/../README.txt\"\n")
                                  .arg(title, version)
                                  .toUtf8();
    const QByteArray readMe =
        QStringLiteral("%1 %2\n\nInstalled from the Veluria marketplace.\n").arg(title, version).toUtf8();
    return {{QStringLiteral("bin/"), {}, 0755, {}, true},
            {QStringLiteral("bin/") + command, script, 0755, {}},
            {QStringLiteral("README.txt"), readMe, 0644, {}}};
}
