#include "workspaces/FileInfoViewController.h"

#include "app/ByteCountFormatter.h"
#include "app/VLRColors.h"
#include "widgets/VLRFonts.h"

#include <QFileInfo>
#include <QHBoxLayout>
#include <QLabel>

namespace {

// A name as people know it: the last path component without its last
// extension, so that "a.b.c" reads "a.b".
QString displayName(const QString& path)
{
    const QString fileName = QFileInfo(path).fileName();
    const qsizetype dot = fileName.lastIndexOf(QLatin1Char('.'));
    return dot > 0 ? fileName.left(dot) : fileName;
}

QLabel* makeLabel(QWidget* parent, const QColor& color, Qt::Alignment alignment)
{
    auto* label = new QLabel(parent);
    // Names come from the file system and are never read as markup.
    label->setTextFormat(Qt::PlainText);
    label->setFont(VLRFonts::muli(12));
    label->setAlignment(alignment | Qt::AlignVCenter);
    QPalette palette = label->palette();
    palette.setColor(QPalette::WindowText, color);
    label->setPalette(palette);
    return label;
}

} // namespace

FileInfoViewController::FileInfoViewController(QObject* parent)
    : QObject(parent)
{ }

FileInfoViewController::~FileInfoViewController()
{
    // The host owns the view once it is placed; a view never placed is ours.
    if (m_selfView && !m_selfView->parent())
        delete m_selfView;
}

VLRView* FileInfoViewController::view()
{
    if (!m_selfView)
        loadView();
    return m_selfView;
}

void FileInfoViewController::loadView()
{
    m_selfView = new VLRView;
    m_selfView->setBorderColor(VLRColors::grey(151));
    m_selfView->setBorderCornerRadius(0);
    m_selfView->setBorderWidth(1);
    m_selfView->setBackgroundColor(QColor::fromRgbF(0.95f, 0.95f, 0.95f, 1.0f));

    m_nameLabel = makeLabel(m_selfView, VLRColors::textColor(), Qt::AlignLeft);
    m_nameLabel->setMinimumWidth(1);
    m_nameLabel->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    m_sizeLabel = makeLabel(m_selfView, VLRColors::grey(151), Qt::AlignRight);
    auto* layout = new QHBoxLayout(m_selfView);
    layout->setContentsMargins(10, 0, 10, 0);
    layout->setSpacing(10);
    layout->addWidget(m_nameLabel, 1);
    layout->addWidget(m_sizeLabel, 0);
}

void FileInfoViewController::setFilePaths(const std::optional<QStringList>& filePaths)
{
    view();
    m_filePaths = filePaths;
    const qsizetype count = filePaths ? filePaths->size() : 0;
    if (count == 1) {
        setFilePath(filePaths->first());
    } else if (count == 0) {
        m_nameLabel->clear();
        m_sizeLabel->clear();
    } else {
        QStringList names;
        for (const QString& path : *filePaths)
            names.append(displayName(path));
        m_nameLabel->setText(names.join(QStringLiteral(", ")));
        m_sizeLabel->setText(QStringLiteral("%1 files").arg(count));
    }
}

void FileInfoViewController::setFilePath(const QString& filePath)
{
    view();
    m_filePath = filePath;
    if (filePath.isNull()) {
        m_nameLabel->clear();
        m_sizeLabel->clear();
        m_selfView->hide();
        return;
    }
    m_nameLabel->setText(displayName(filePath));
    // A file that vanished answers neither question and keeps the text.
    const QFileInfo info(filePath);
    if (info.exists()) {
        if (info.isDir())
            m_sizeLabel->clear();
        else
            m_sizeLabel->setText(ByteCountFormatter::sizeFormatWithInt(info.size()));
    }
    m_selfView->show();
}
