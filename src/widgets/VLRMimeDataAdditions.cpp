#include "widgets/VLRMimeDataAdditions.h"

#include <QMimeData>
#include <QUrl>

QStringList vlr_filenames(const QMimeData* mimeData)
{
    QStringList paths;
    if (!mimeData || !mimeData->hasUrls())
        return paths;
    const QList<QUrl> urls = mimeData->urls();
    for (const QUrl& url : urls) {
        if (url.isLocalFile())
            paths.append(url.toLocalFile());
    }
    return paths;
}
