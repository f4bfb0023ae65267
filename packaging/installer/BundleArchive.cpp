#include "installer/BundleArchive.h"

#include <QDir>
#include <QFileInfo>

#include <archive.h>
#include <archive_entry.h>

#include <memory>

namespace {

using ArchivePtr = std::unique_ptr<archive, int (*)(archive*)>;

QString archiveError(archive* a)
{
    const char* text = archive_error_string(a);
    return text ? QString::fromLocal8Bit(text) : QStringLiteral("unknown archive error");
}

bool isBundleFolderName(const QString& name)
{
    return name.startsWith(QLatin1String("veluria-")) && name.size() > 8 && !name.contains(QLatin1Char('/'));
}

} // namespace

BundleArchive::Unpacked BundleArchive::unpack(const QString& archivePath, const QString& intoFolder)
{
    Unpacked result;
    ArchivePtr reader(archive_read_new(), archive_read_free);
    ArchivePtr writer(archive_write_disk_new(), archive_write_free);
    archive_read_support_filter_all(reader.get());
    archive_read_support_format_tar(reader.get());
    archive_read_support_format_gnutar(reader.get());
    // Names are made absolute below, under the folder, once their first
    // part has been found to be the bundle's folder.
    archive_write_disk_set_options(writer.get(),
                                   ARCHIVE_EXTRACT_TIME | ARCHIVE_EXTRACT_PERM | ARCHIVE_EXTRACT_SECURE_NODOTDOT
                                       | ARCHIVE_EXTRACT_SECURE_SYMLINKS);
    if (archive_read_open_filename(reader.get(), QFile::encodeName(archivePath).constData(), 64 * 1024) != ARCHIVE_OK)
        return {QStringLiteral("the package is not a bundle archive: %1").arg(archiveError(reader.get())), {}};
    const QString base = QDir(intoFolder).absolutePath() + QLatin1Char('/');
    archive_entry* entry = nullptr;
    int status = ARCHIVE_OK;
    int entries = 0;
    while ((status = archive_read_next_header(reader.get(), &entry)) == ARCHIVE_OK) {
        ++entries;
        const QString name = QString::fromUtf8(archive_entry_pathname_utf8(entry) ? archive_entry_pathname_utf8(entry)
                                                                                  : archive_entry_pathname(entry));
        const QString top = QDir::cleanPath(name).section(QLatin1Char('/'), 0, 0);
        if (!isBundleFolderName(top) || (!result.topName.isNull() && top != result.topName))
            return {QStringLiteral("the package is not one bundle folder (it holds \"%1\")").arg(name), {}};
        result.topName = top;
        const mode_t type = archive_entry_filetype(entry);
        if (type != AE_IFREG && type != AE_IFDIR && type != AE_IFLNK)
            return {QStringLiteral("the package holds \"%1\", which is no file, folder or link").arg(name), {}};
        archive_entry_set_pathname(entry, QFile::encodeName(base + name).constData());
        if (const char* hardlink = archive_entry_hardlink(entry))
            archive_entry_set_hardlink(entry, QFile::encodeName(base + QString::fromLocal8Bit(hardlink)).constData());
        if (archive_write_header(writer.get(), entry) != ARCHIVE_OK)
            return {QStringLiteral("\"%1\" can't be unpacked: %2").arg(name, archiveError(writer.get())), {}};
        const void* block = nullptr;
        size_t size = 0;
        la_int64_t offset = 0;
        int data = ARCHIVE_OK;
        while ((data = archive_read_data_block(reader.get(), &block, &size, &offset)) == ARCHIVE_OK) {
            if (archive_write_data_block(writer.get(), block, size, offset) != ARCHIVE_OK)
                return {QStringLiteral("\"%1\" can't be written: %2").arg(name, archiveError(writer.get())), {}};
        }
        if (data != ARCHIVE_EOF)
            return {QStringLiteral("the package is damaged: %1").arg(archiveError(reader.get())), {}};
        if (archive_write_finish_entry(writer.get()) != ARCHIVE_OK)
            return {QStringLiteral("\"%1\" can't be written: %2").arg(name, archiveError(writer.get())), {}};
    }
    if (status != ARCHIVE_EOF)
        return {QStringLiteral("the package is not a bundle archive: %1").arg(archiveError(reader.get())), {}};
    if (entries == 0)
        return {QStringLiteral("the package is empty"), {}};
    if (!QFileInfo(base + result.topName + QStringLiteral("/bin/veluria")).isExecutable())
        return {QStringLiteral("the package holds no program bin/veluria"), {}};
    return result;
}
