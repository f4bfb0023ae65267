#include "workspaces/WorkspacesViewController.h"

#include "app/VLRColors.h"
#include "app/VLRText.h"
#include "lists/ListSeparatorViewController.h"
#include "platform/VLRDesktopServices.h"
#include "service/VLREnvironment.h"
#include "service/VLRServiceLibrary.h"
#include "service/VLRWorkspace.h"
#include "widgets/VLRImageCatalogue.h"
#include "workspaces/WorkspaceCellViewController.h"
#include "workspaces/WorkspacesViewControllerDelegate.h"

#include <QGridLayout>
#include <QScrollBar>
#include <QVBoxLayout>

namespace {

// The public site's page about workspaces.
const QUrl LearnWorkspacesURL(QStringLiteral("https://www.veluria.com/learn-workspaces/"));

// -1, 0 or 1 as a is earlier than, the same as or later than b; a record
// without a date is the same as any boundary.
int compare(const QDateTime& a, const QDateTime& b)
{
    if (!a.isValid() || !b.isValid() || a == b)
        return 0;
    return a < b ? -1 : 1;
}

bool earlier(const QDateTime& a, const QDateTime& b)
{
    return compare(a, b) < 0;
}

// Midnight of the given day of the month, a day at or below 0 carried into
// the month before, as the calendar does.
QDateTime midnight(int year, int month, int day)
{
    return QDateTime(QDate(year, month, 1).addDays(day - 1), QTime(0, 0));
}

} // namespace

WorkspacesViewController::WorkspacesViewController(const ClientServices& services, std::function<QDateTime()> clock,
                                                   QObject* parent)
    : QObject(parent)
    , m_services(services)
    , m_clock(clock ? std::move(clock) : [] { return QDateTime::currentDateTime(); })
{ }

WorkspacesViewController::~WorkspacesViewController()
{
    m_delegate = nullptr;
    if (m_tableView)
        m_tableView->setDataSource(nullptr);
    m_workspaces.clear();
    m_madeRows.clear();
    delete m_view;
}

QWidget* WorkspacesViewController::view()
{
    if (!m_view)
        loadView();
    return m_view;
}

void WorkspacesViewController::loadView()
{
    m_view = new VLRView;
    m_view->setBackgroundColor(VLRColors::grey(250));
    m_view->setBorderColor(VLRColors::grey(151));
    m_view->setBorderCornerRadius(0);
    m_view->setBorderWidth(1);

    // The full-page pictures keep their shape, centred on the page.
    m_backgroundImageView = new QLabel(m_view);
    m_backgroundImageView->setAlignment(Qt::AlignCenter);
    m_backgroundImageView->setPixmap(VLRImageCatalogue::imageNamed(QStringLiteral("workspaces_empty_background.pdf")));

    m_tableView = new ListTableView(m_view);
    m_tableView->setMinimumWidth(0);
    m_tableView->viewport()->setAutoFillBackground(true);
    QPalette palette = m_tableView->viewport()->palette();
    palette.setColor(QPalette::Window, VLRColors::grey(233));
    m_tableView->viewport()->setPalette(palette);
    // The scroll bar keeps to the page's greys under any desktop palette.
    QPalette bar = m_tableView->verticalScrollBar()->palette();
    bar.setColor(QPalette::Window, VLRColors::grey(233));
    bar.setColor(QPalette::Base, VLRColors::grey(233));
    bar.setColor(QPalette::Button, VLRColors::grey(250));
    bar.setColor(QPalette::Dark, VLRColors::grey(151));
    bar.setColor(QPalette::Mid, VLRColors::grey(206));
    bar.setColor(QPalette::Shadow, VLRColors::grey(151));
    m_tableView->verticalScrollBar()->setPalette(bar);
    m_tableView->setDataSource(this);

    computeDates();
    const std::pair<std::unique_ptr<ListDividerViewController>*, quint64> dividers[] = {
        {&m_dividerToday, ListDividerViewController::Today},
        {&m_dividerYesterday, ListDividerViewController::Yesterday},
        {&m_dividerThisWeek, ListDividerViewController::ThisWeek},
        {&m_dividerLastWeek, ListDividerViewController::LastWeek},
        {&m_dividerEarlier, ListDividerViewController::Earlier},
    };
    for (const auto& [divider, type] : dividers) {
        *divider = std::make_unique<ListDividerViewController>();
        (*divider)->setType(type);
        (*divider)->view();
    }

    auto makeButton = [this](const QString& image, const QString& mouseOver, const QString& name) {
        auto* button = new VLRButton(m_view);
        button->setCursor(Qt::PointingHandCursor);
        button->setAccessibleName(name);
        button->setFixedSize(VLRImageCatalogue::naturalSize(image));
        button->setDefaultImage(VLRImageCatalogue::imageNamed(image));
        if (!mouseOver.isNull()) {
            button->setMouseOverImage(VLRImageCatalogue::imageNamed(mouseOver));
            button->setClickedImage(VLRImageCatalogue::imageNamed(image));
        }
        return button;
    };
    m_createWorkspaceButton =
        makeButton(QStringLiteral("create_workspace_active"), QStringLiteral("create_workspace_hover"),
                   vlr::localized("Create a workspace"));
    connect(m_createWorkspaceButton, &QAbstractButton::clicked, this,
            &WorkspacesViewController::createWorkspaceButtonClicked);
    m_learnButton = makeButton(QStringLiteral("learn_about_workspaces_active"), QString(),
                               vlr::localized("Learn about workspaces"));
    connect(m_learnButton, &QAbstractButton::clicked, this, &WorkspacesViewController::learnButtonClicked);
    m_resendConfirmButton =
        makeButton(QStringLiteral("resend_confirmation"), QString(), vlr::localized("Resend the confirmation e-mail"));
    m_resendConfirmButton->hide();
    connect(m_resendConfirmButton, &QAbstractButton::clicked, this, &WorkspacesViewController::resendButtonClicked);

    // The picture in the middle, its buttons under it; the table over all.
    auto* page = new QGridLayout(m_view);
    page->setContentsMargins(1, 1, 1, 1);
    page->addWidget(m_backgroundImageView, 0, 0);
    auto* buttons = new QVBoxLayout;
    buttons->setSpacing(8);
    buttons->addStretch(1);
    buttons->addSpacing(250);
    buttons->addWidget(m_createWorkspaceButton, 0, Qt::AlignHCenter);
    buttons->addWidget(m_learnButton, 0, Qt::AlignHCenter);
    buttons->addWidget(m_resendConfirmButton, 0, Qt::AlignHCenter);
    buttons->addStretch(1);
    page->addLayout(buttons, 0, 0);
    page->addWidget(m_tableView, 0, 0);
    // The table covers the picture and its buttons while it shows.
    m_tableView->raise();
}

void WorkspacesViewController::computeDates()
{
    const QDateTime now = m_clock();
    const QTime time = now.time();
    // Midnight with the fraction of a second of now still on it.
    m_today = now.addSecs(-(time.hour() * 3600 + time.minute() * 60 + time.second()));
    m_yesterday = m_today.addSecs(-24 * 3600);
    // Weeks begin on Sunday, weekday 1, whatever the locale prefers.
    const QDate date = now.date();
    const int weekday = date.dayOfWeek() % 7 + 1;
    const int weekStart = date.day() + 1 - weekday;
    m_thisWeek = midnight(date.year(), date.month(), weekStart);
    m_lastWeek = midnight(date.year(), date.month(), weekStart - 7);
}

void WorkspacesViewController::updateWorkspaces(const VLRWorkspaceList& workspaces)
{
    view();
    m_workspaces.clear();
    m_madeRows.clear();
    if (!workspaces.isEmpty()) {
        bool today = false;
        bool yesterday = false;
        bool thisWeek = false;
        bool lastWeek = false;
        bool before = false;
        auto add = [this](std::unique_ptr<ListItemViewController> row) {
            m_workspaces.append(row.get());
            m_madeRows.push_back(std::move(row));
        };
        for (const VLRWorkspacePtr& workspace : workspaces) {
            const QDateTime d = workspace ? workspace->updatedAt() : QDateTime();
            if (!earlier(d, m_today) && !today) {
                m_workspaces.append(m_dividerToday.get());
                today = true;
            } else if (earlier(d, m_today) && !earlier(d, m_yesterday) && !yesterday) {
                m_workspaces.append(m_dividerYesterday.get());
                yesterday = true;
            } else if (earlier(d, m_yesterday) && !earlier(d, m_thisWeek) && !thisWeek) {
                m_workspaces.append(m_dividerThisWeek.get());
                thisWeek = true;
            } else if (earlier(d, m_thisWeek) && !earlier(d, m_lastWeek) && !lastWeek) {
                m_workspaces.append(m_dividerLastWeek.get());
                lastWeek = true;
            } else if (!before && earlier(d, m_lastWeek)) {
                m_workspaces.append(m_dividerEarlier.get());
                before = true;
            } else {
                add(std::make_unique<ListSeparatorViewController>());
            }
            auto cell = std::make_unique<WorkspaceCellViewController>(workspace);
            cell->setDelegate(this);
            add(std::move(cell));
        }
        add(std::make_unique<ListSeparatorViewController>());
    }
    m_tableView->reloadData();
    updateState();
}

void WorkspacesViewController::updateState()
{
    view();
    qint64 state = ListState;
    if (m_delegate && m_delegate->workspaceViewControllerEmailNeedsConfirmation())
        state = NeedsConfirmationState;
    else if (m_delegate && m_delegate->workspaceViewControllerLoading())
        state = LoadingState;
    else if (m_workspaces.isEmpty())
        state = EmptyState;
    const bool changed = state != m_state;
    m_state = state;
    if (!changed)
        return;
    static const QString pictures[] = {QString(), QStringLiteral("workspaces_needs_confirm.pdf"),
                                       QStringLiteral("workspaces_loading.pdf"),
                                       QStringLiteral("workspaces_empty_background.pdf")};
    const QString& picture = pictures[state];
    if (picture.isNull())
        m_backgroundImageView->clear();
    else
        m_backgroundImageView->setPixmap(VLRImageCatalogue::imageNamed(picture));
    m_createWorkspaceButton->setVisible(state == EmptyState);
    m_learnButton->setVisible(state == EmptyState);
    m_tableView->setVisible(state == ListState);
    m_resendConfirmButton->setVisible(state == NeedsConfirmationState);
}

void WorkspacesViewController::createWorkspaceButtonClicked()
{
    if (m_delegate)
        m_delegate->workspaceViewControllerCreateWorkspaceClicked();
}

void WorkspacesViewController::learnButtonClicked()
{
    if (m_services.desktop)
        m_services.desktop->openURL(LearnWorkspacesURL);
}

void WorkspacesViewController::resendButtonClicked()
{
    if (!m_services.library || !m_services.desktop)
        return;
    m_services.desktop->openURL(QUrl(vlr::format(QStringLiteral("https://%@/users/resend_email_confirm"),
                                                 m_services.library->environment().appHostname())));
}

void WorkspacesViewController::workspaceCellViewControllerWasClicked(WorkspaceCellViewController*)
{
    if (m_delegate)
        m_delegate->workspaceViewControllerHadCellClicked(this);
}

void WorkspacesViewController::workspaceCellViewControllerDidReceiveFiles(WorkspaceCellViewController* cell,
                                                                          const QStringList& files)
{
    if (m_delegate && cell)
        m_delegate->workspaceViewControllerDidReceiveFiles(this, files, cell->workspace());
}

int WorkspacesViewController::numberOfRowsInTableView(ListTableView*)
{
    return int(m_workspaces.size());
}

QWidget* WorkspacesViewController::tableViewViewForRow(ListTableView*, int row)
{
    return row >= 0 && row < m_workspaces.size() ? m_workspaces.at(row)->view() : nullptr;
}

int WorkspacesViewController::tableViewHeightOfRow(ListTableView*, int row)
{
    if (row < 0 || row >= m_workspaces.size())
        return 1;
    ListItemViewController* item = m_workspaces.at(row);
    if (qobject_cast<ListDividerViewController*>(item))
        return DividerHeight;
    if (qobject_cast<WorkspaceCellViewController*>(item))
        return CellHeight;
    return SeparatorHeight;
}
