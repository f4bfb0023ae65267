// Renders the transfers tab offscreen to PNG files for people to look at.

#include "transfers/TransfersTesting.h"

#include "fakes/FakeClientServices.h"
#include "transfers/TransfersViewController.h"
#include "transfers/TransfersViewControllerDelegate.h"
#include "widgets/VLRFonts.h"

#include <QApplication>
#include <QDir>
#include <QMouseEvent>
#include <QPalette>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

const QSize PageSize(360, 472);

// The desktop's own colours around the page, light or dark: the page keeps
// its own look in both.
QPalette desktopPalette(bool dark)
{
    if (!dark)
        return QPalette(QColor(239, 239, 239));
    QPalette palette(QColor(53, 53, 53));
    palette.setColor(QPalette::Base, QColor(42, 42, 42));
    palette.setColor(QPalette::Text, Qt::white);
    palette.setColor(QPalette::WindowText, Qt::white);
    return palette;
}

VLRTransferList mixedTransfers(qint64 type, const QString& prefix)
{
    const QList<std::pair<const char*, TransferState>> rows = {
        {"character_rig_final", TransferState::Running},
        {"forest_scene_lighting", TransferState::Paused},
        {"texture_atlas_4k", TransferState::Queued},
        {"soundtrack_master_v2", TransferState::Failed},
        {"concept_sketches", TransferState::Queued},
        {"walk_cycle_reference_footage_take_07", TransferState::Queued},
    };
    VLRTransferList list;
    qint64 size = 734003;
    for (const auto& [name, state] : rows) {
        auto transfer = makeTransfer(prefix + name, state, type);
        transfer->setFileURL(QUrl::fromLocalFile(QStringLiteral("/home/ada/Veluria/") + name + ".blend"));
        transfer->setTotalSize(size *= 7);
        list.append(transfer);
    }
    return list;
}

class TransfersScreenshotsTest : public ::testing::TestWithParam<bool>
{
protected:
    void SetUp() override
    {
        VLRFonts::loadMuli();
        QDir().mkpath(QStringLiteral(VELURIA_SCREENSHOT_DIR));
        m_palette = QApplication::palette();
        QApplication::setPalette(desktopPalette(GetParam()));
    }

    void TearDown() override { QApplication::setPalette(m_palette); }

    void save(TransfersViewController& page, const QString& name)
    {
        QWidget frame;
        frame.setAutoFillBackground(true);
        frame.resize(PageSize + QSize(24, 24));
        page.view()->setParent(&frame);
        page.view()->setGeometry(12, 12, PageSize.width(), PageSize.height());
        frame.show();
        QCoreApplication::processEvents();
        const QString path = QStringLiteral(VELURIA_SCREENSHOT_DIR "/transfers-%1-%2.png")
                                 .arg(name, GetParam() ? QStringLiteral("dark") : QStringLiteral("light"));
        EXPECT_TRUE(frame.grab().save(path)) << path.toStdString();
        page.view()->setParent(nullptr);
    }

    static void hover(TransfersTableView* table, int row)
    {
        const QPoint point = table->visualRect(table->model()->index(row, 3)).center();
        QMouseEvent move(QEvent::MouseMove, point, table->viewport()->mapToGlobal(point), Qt::NoButton, Qt::NoButton,
                         Qt::NoModifier);
        QCoreApplication::sendEvent(table->viewport(), &move);
    }

    QTemporaryDir m_folder;
    FakeClientServices m_fakes{m_folder.path()};
    QPalette m_palette;
};

} // namespace

TEST_P(TransfersScreenshotsTest, EachListWithEveryState)
{
    TransfersViewController page(m_fakes.services());
    page.view()->resize(PageSize);
    page.setUploads(mixedTransfers(VLRTransferReporting::UploadType, "u"));
    page.setDownloads(mixedTransfers(2, "d"));
    VLRTransferList completed;
    for (int i = 0; i < 7; ++i) {
        auto transfer = makeTransfer(QStringLiteral("c%1").arg(i),
                                     i == 2 ? TransferState::Failed : TransferState::Finished, i % 2 + 1);
        transfer->setFileURL(QUrl::fromLocalFile(QStringLiteral("/home/ada/Veluria/shot_%1_comp.exr").arg(i * 10)));
        completed.append(transfer);
    }
    page.setCompleted(completed);
    page.updateUploadThroughput(1840);
    page.updateUploadTimeRemaining(754, true);
    page.updateDownloadThroughput(512.5);
    page.updateDownloadTimeRemaining(42, true);

    page.showTab(TransfersPage::UploadsList, "ucharacter_rig_final");
    save(page, "uploads");
    hover(page.uploadsTableView(), 0);
    save(page, "uploads-hover-running");
    hover(page.uploadsTableView(), 3);
    save(page, "uploads-hover-failed");

    page.showTab(TransfersPage::DownloadsList, QString());
    page.setTransfersPaused(true);
    save(page, "downloads-paused-all");

    page.showTab(TransfersPage::CompletedList, "c3");
    save(page, "completed");
}

TEST_P(TransfersScreenshotsTest, NeedsConfirmationAndLoading)
{
    struct Asking : TransfersViewControllerDelegate
    {
        bool needsConfirmation = true;
        void transfersViewControllerDidClearCompleted(TransfersPage*) override { }
        void transfersViewControllerDidPauseTransfers(TransfersPage*, bool) override { }
        void transfersViewControllerRestartedUpload(TransfersPage*, const VLRTransferReportingPtr&) override { }
        void transfersViewControllerRestartedDownload(TransfersPage*, const VLRTransferReportingPtr&) override { }
        bool transfersViewControllerEmailNeedsConfirmation() override { return needsConfirmation; }
        bool transfersViewControllerLoading() override { return true; }
        void transfersViewControllerMovedUploads(TransfersPage*, const VLRTransferList&,
                                                 const VLRTransferReportingPtr&) override
        { }
        void transfersViewControllerMovedDownloads(TransfersPage*, const VLRTransferList&,
                                                   const VLRTransferReportingPtr&) override
        { }
    } delegate;
    TransfersViewController page(m_fakes.services());
    page.setDelegate(&delegate);
    page.updateState();
    save(page, "needs-confirmation");
    delegate.needsConfirmation = false;
    page.updateState();
    save(page, "loading");
}

INSTANTIATE_TEST_SUITE_P(Panels, TransfersScreenshotsTest, ::testing::Bool());
