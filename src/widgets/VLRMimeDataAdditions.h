#pragma once

#include <QStringList>

class QMimeData;

// The local file paths a drag carries, in the drag's order; empty when it
// carries none (no URLs, or only remote ones).
QStringList vlr_filenames(const QMimeData* mimeData);
