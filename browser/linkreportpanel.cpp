// SPDX-License-Identifier: GPL-3.0-or-later
#include "browser/linkreportpanel.h"

#include "base/files.h"
#include "base/pathtext.h"
#include "browser/countedtext.h"
#include "browser/displaytext.h"
#include "browser/linkjobs.h"
#include "browser/panehost.h"
#include "links/webreporttext.h"

#include "ui_LinkReportPanel.h"

#include <QAction>
#include <QElapsedTimer>
#include <QFile>
#include <QFileDialog>
#include <QMessageBox>

#include <algorithm>
#include <system_error>

namespace luma {

namespace fs = std::filesystem;

namespace {

using Kind = LinkReportRun::Kind;

// In milliseconds.
constexpr int firstShowInterval = 40;
constexpr int filterDelay = 150;
constexpr int refreshDelay = 300;

// Itself or the first one above it that is there.
fs::path nearestFolder(fs::path path)
{
    std::error_code error;
    while (!fs::is_directory(path, error) && path.has_relative_path())
        path = path.parent_path();
    return path;
}

} // namespace

/// The log tab as the panel of a LinkJobs.
class ReportLog final : public ProgressReporter
{
public:
    /// `whenEnded` is called when a job has ended.
    ReportLog(LogView& view, std::function<void()> whenEnded, QObject* parent)
        : ProgressReporter(parent), m_view(view), m_whenEnded(std::move(whenEnded))
    {
        connect(&view, &LogView::lineActivated, this, &ProgressReporter::lineActivated);
    }

    void begin(const QString& /*status*/, Place /*place*/) override
    {
        m_isRunning = true;
        m_view.clear();
        emit began();
    }
    void setStatus(const QString& /*status*/) override {}
    void append(const QString& text) override { m_view.append(text); }
    void finish(const JobEnd& /*end*/) override
    {
        m_isRunning = false;
        m_view.showEnd();
        m_whenEnded();
        emit ended();
    }
    [[nodiscard]] bool isRunning() const override { return m_isRunning; }
    [[nodiscard]] QString lineText(int number) const override { return m_view.log().lineText(number); }

private:
    LogView& m_view;
    std::function<void()> m_whenEnded;
    bool m_isRunning = false;
};

LinkReportPanel::LinkReportPanel(QWidget* parent)
    : QDialog(parent),
      m_ui(std::make_unique<Ui::LinkReportPanel>()),
      m_model(new LinkReportModel(this)),
      m_run(new LinkReportRun(this)),
      m_choices(std::make_unique<ReportChoices>())
{
    m_ui->setupUi(this);
    m_log = new ReportLog(
        *m_ui->linkReportLog, [this] { updateControls(); }, this);
    m_logJobs = new LinkJobs(*m_log, this);
    setUpView();
    connectControls();
    connectRun();
    updateControls();
}

LinkReportPanel::~LinkReportPanel() = default;

void LinkReportPanel::setUpView()
{
    m_ui->linkReportView->setReport(*m_model);
    m_ui->linkReportView->setContextMenuPolicy(Qt::ActionsContextMenu);
    addAction("linkReportOpenAction", tr("&Open Page"), {}, &LinkReportPanel::openPage);
    addAction("linkReportShowAction", tr("Show in &Pane"), {}, &LinkReportPanel::showInPane);
    addAction("linkReportReplaceAction", tr("&Replace Everywhere..."), Qt::CTRL | Qt::Key_R,
              &LinkReportPanel::replaceEverywhere);
    addAction("linkReportCopyAction", tr("&Copy"), QKeySequence::Copy, &LinkReportPanel::copyText);
    addAction("linkReportCopyCsvAction", tr("Copy as CS&V"), Qt::CTRL | Qt::SHIFT | Qt::Key_C,
              &LinkReportPanel::copyCsv);
    addAction("linkReportSaveAction", tr("&Save As..."), QKeySequence::Save, &LinkReportPanel::saveAs);
    m_ui->linkReportPlaceholder->setBackgroundRole(QPalette::Base);
    m_ui->linkReportPlaceholder->setForegroundRole(QPalette::PlaceholderText);
    QSizePolicy policy = m_ui->linkReportProgressIndicator->sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    m_ui->linkReportProgressIndicator->setSizePolicy(policy);
    auto* const find = new QAction(this);
    find->setObjectName(QStringLiteral("linkReportFindAction"));
    find->setShortcut(QKeySequence::Find);
    connect(find, &QAction::triggered, m_ui->linkReportFilter, qOverload<>(&QWidget::setFocus));
    QDialog::addAction(find);
}

void LinkReportPanel::addAction(const char* name, const QString& text, const QKeySequence& keys,
                                void (LinkReportPanel::*does)())
{
    auto* const action = new QAction(text, this);
    action->setObjectName(QLatin1StringView(name));
    action->setShortcut(keys);
    action->setShortcutContext(Qt::WidgetShortcut);
    connect(action, &QAction::triggered, this, does);
    m_ui->linkReportView->addAction(action);
}

void LinkReportPanel::connectControls()
{
    connect(m_ui->linkReportStopButton, &QPushButton::clicked, this, &LinkReportPanel::stop);
    connect(m_ui->linkReportRestartButton, &QPushButton::clicked, this, &LinkReportPanel::restart);
    connect(m_ui->linkReportSaveButton, &QPushButton::clicked, this, &LinkReportPanel::saveAs);
    connect(m_ui->linkReportCloseButton, &QPushButton::clicked, this, &LinkReportPanel::reject);
    connect(m_ui->linkReportReplaceButton, &QPushButton::clicked, this, &LinkReportPanel::replaceEverywhere);
    connect(m_ui->linkReportView->selectionModel(), &QItemSelectionModel::currentChanged, this,
            &LinkReportPanel::updateReplaceAction);
    connect(m_ui->linkReportView, &LinkReportView::findingActivated, this, &LinkReportPanel::activate);
    connect(m_ui->linkReportTabs, &QTabWidget::currentChanged, this, &LinkReportPanel::showLog);
    connect(m_ui->linkReportGrouping, &QComboBox::currentIndexChanged, this, [this](int index) {
        m_ui->linkReportView->setGrouping(static_cast<LinkReportModel::Grouping>(index));
    });
    m_filterTimer.setSingleShot(true);
    m_filterTimer.setInterval(filterDelay);
    connect(m_ui->linkReportFilter, &QLineEdit::textChanged, &m_filterTimer, qOverload<>(&QTimer::start));
    connect(&m_filterTimer, &QTimer::timeout, this, [this] {
        m_model->setFilter(m_ui->linkReportFilter->text());
        updateControls();
    });
}

void LinkReportPanel::connectRun()
{
    m_refreshTimer.setSingleShot(true);
    m_refreshTimer.setInterval(refreshDelay);
    connect(&m_showTimer, &QTimer::timeout, this, &LinkReportPanel::showFindings);
    connect(&m_refreshTimer, &QTimer::timeout, this, &LinkReportPanel::refresh);
    connect(m_run, &LinkReportRun::ended, this, &LinkReportPanel::end);
    connect(m_logJobs, &LinkJobs::fileActivated, this, &LinkReportPanel::fileActivated);
}

void LinkReportPanel::begin(LinkReportRun::Request request, const ReportChoices& choices)
{
    stop();
    m_request = std::move(request);
    m_request.rules = choices.webRules;
    *m_choices = choices;
    m_error.clear();
    m_hasLog = false;
    m_ui->linkReportLog->clear();
    m_model->setPages({});
    const QString item = displayText(m_request.item.lexically_relative(m_request.site).native());
    setWindowTitle(m_request.kind == Kind::MissingLinks ? tr("Missing links")
                   : m_request.kind == Kind::LinksFrom  ? tr("Links from %1").arg(item)
                                                        : tr("Links to %1").arg(item));
    const QString site = displayText(m_request.site.native());
    m_ui->linkReportTitle->setText(m_side.isEmpty() ? site : tr("in %1: %2").arg(m_side, site));
    setState(State::Running);
    m_showTimer.start(firstShowInterval);
    m_run->start(m_request);
    showLog();
    show();
    raise();
    activateWindow();
    m_ui->linkReportView->setFocus();
}

void LinkReportPanel::showFindings()
{
    if (m_state != State::Running)
        return;
    QElapsedTimer timer;
    timer.start();
    m_model->append(m_run->take());
    updateControls();
    m_ui->linkReportView->layOut();
    // A large table takes longer to show; at least nine tenths of the time remain for the user.
    m_showTimer.setInterval(std::max(firstShowInterval, static_cast<int>(timer.elapsed()) * 10));
}

void LinkReportPanel::end(const QString& error)
{
    m_error = error;
    if (m_state == State::Refreshing)
        m_model->setPages(m_run->take());
    else
        showFindings();
    m_showTimer.stop();
    setState(State::Idle);
}

void LinkReportPanel::stop()
{
    m_refreshTimer.stop();
    m_logJobs->stop();
    if (m_state == State::Running) {
        showFindings();
        setState(State::Stopped);
    } else if (m_state == State::Refreshing) {
        setState(State::Idle);
    }
    m_showTimer.stop();
    m_run->stop();
}

void LinkReportPanel::siteChanged()
{
    if (isVisible() && m_state != State::Stopped && !m_refreshTimer.isActive())
        m_refreshTimer.start();
}

void LinkReportPanel::refresh()
{
    if (m_run->isRunning()) {
        m_refreshTimer.start();
        return;
    }
    setState(State::Refreshing);
    m_run->start(m_request);
}

void LinkReportPanel::restart()
{
    emit restartRequested(m_request.kind, m_request.item);
}

void LinkReportPanel::reject()
{
    stop();
    QDialog::reject();
}

/// Makes the log when it is first seen.
void LinkReportPanel::showLog()
{
    if (m_hasLog || m_ui->linkReportTabs->currentWidget() != m_ui->linkReportLogTab || m_request.site.empty())
        return;
    m_hasLog = true;
    if (m_request.kind == Kind::MissingLinks)
        m_logJobs->findMissingLinks(m_request.site, *m_choices);
    else
        m_logJobs->showLinks(m_request.site, m_request.item,
                             m_request.kind == Kind::LinksFrom ? LinkJobs::Direction::From
                                                               : LinkJobs::Direction::To,
                             *m_choices);
    updateControls();
}

void LinkReportPanel::activate(const LinkReportModel::Finding& finding)
{
    emit pageActivated(m_request.site / finding.page->path, finding.link ? finding.link->line : 0,
                       finding.link ? finding.link->column : 0);
}

void LinkReportPanel::openPage()
{
    const auto findings = m_model->findings({m_ui->linkReportView->currentIndex()});
    if (!findings.empty())
        activate(findings.front());
}

void LinkReportPanel::showInPane()
{
    const auto findings = m_model->findings({m_ui->linkReportView->currentIndex()});
    if (!findings.empty())
        emit fileActivated(m_request.site / findings.front().page->path);
}

/// The link of the current row, or of its group, if all links to its target are broken; else null.
const WebLink* LinkReportPanel::replaceableLink() const
{
    const QModelIndex current = m_ui->linkReportView->currentIndex();
    if (m_model->isGroup(current) && m_model->grouping() != LinkReportModel::Grouping::ByTarget)
        return nullptr;
    const auto findings = m_model->findings({current});
    const WebLink* const link = findings.empty() ? nullptr : findings.front().link;
    return link && !link->target.empty() && link->why != MissingReason::NoSuchPlace ? link : nullptr;
}

void LinkReportPanel::updateReplaceAction()
{
    const bool isPossible = replaceableLink() != nullptr;
    m_ui->linkReportReplaceButton->setEnabled(isPossible);
    findChild<QAction*>(QStringLiteral("linkReportReplaceAction"))->setEnabled(isPossible);
}

/// Asks for the file that the links are to lead to.
void LinkReportPanel::replaceEverywhere()
{
    const WebLink* const link = replaceableLink();
    if (!link)
        return;
    const fs::path target = m_request.site / link->target;
    auto* const dialog =
        new QFileDialog(this, tr("New target of all links to %1").arg(displayText(link->target)),
                        textOf(nearestFolder(target)));
    dialog->setObjectName(QStringLiteral("replaceTargetDialog"));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setFileMode(QFileDialog::ExistingFile);
    dialog->setLabelText(QFileDialog::Accept, tr("Choose"));
    connect(dialog, &QFileDialog::fileSelected, this,
            [this, target](const QString& file) { emit replacementRequested(target, pathOf(file)); });
    dialog->open();
}

void LinkReportPanel::copyText()
{
    m_ui->linkReportView->copyText();
}

void LinkReportPanel::copyCsv()
{
    m_ui->linkReportView->copyCsv();
}

void LinkReportPanel::saveAs()
{
    auto* const dialog = new QFileDialog(this, tr("Save the report"), QString(),
                                         tr("Comma-separated values (*.csv);;JSON (*.json)"));
    dialog->setObjectName(QStringLiteral("saveReportDialog"));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setAcceptMode(QFileDialog::AcceptSave);
    dialog->setDefaultSuffix(QStringLiteral("csv"));
    connect(dialog, &QFileDialog::filterSelected, dialog, [dialog](const QString& filter) {
        dialog->setDefaultSuffix(filter.contains(QLatin1StringView("json")) ? QStringLiteral("json")
                                                                            : QStringLiteral("csv"));
    });
    connect(dialog, &QFileDialog::fileSelected, this, &LinkReportPanel::write);
    dialog->open();
}

/// Writes the rows that are shown; the file's extension says how.
void LinkReportPanel::write(const QString& path)
{
    const bool isJson = path.endsWith(QLatin1StringView(".json"), Qt::CaseInsensitive);
    std::string text(isJson ? std::string_view() : csvHeader);
    for (const auto& [page, link] : m_model->shownFindings()) {
        if (!isJson)
            appendCsv(text, *page, link);
        else if (link)
            appendJson(text, page->path, *link);
        else if (page->unreadable.empty())
            appendJson(text, "page", page->path);
        else
            appendJson(text, *page);
    }
    const auto written = writeFile(QFile::encodeName(path).toStdString(), text);
    if (written)
        return;
    auto* const box = new QMessageBox(QMessageBox::Warning, tr("The report could not be saved"),
                                      displayText(written.error().text), QMessageBox::Ok, this);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->open();
}

void LinkReportPanel::setState(State state)
{
    m_state = state;
    updateControls();
}

void LinkReportPanel::updateControls()
{
    const bool isRunning = m_state == State::Running;
    m_ui->linkReportProgressIndicator->setVisible(isRunning);
    m_ui->linkReportStopButton->setEnabled(isRunning || m_log->isRunning());
    m_ui->linkReportRestartButton->setEnabled(!isRunning);
    const bool hasRows = m_model->shownCount() > 0;
    m_ui->linkReportSaveButton->setEnabled(hasRows);
    m_ui->linkReportReplaceButton->setVisible(m_request.kind == Kind::MissingLinks);
    updateReplaceAction();
    m_ui->linkReportStack->setCurrentWidget(hasRows ? static_cast<QWidget*>(m_ui->linkReportView)
                                                    : m_ui->linkReportPlaceholder);
    m_ui->linkReportPlaceholder->setText(placeholderText());
    m_ui->linkReportNote->setText(countsText());
}

QString LinkReportPanel::placeholderText() const
{
    if (m_model->rowCountOfReport() > 0)
        return tr("No row matches the filter.");
    if (m_state == State::Running)
        return tr("Looking through all pages of the site");
    if (m_state == State::Stopped)
        return tr("Stopped before all pages were checked. Restart begins again.");
    if (!m_error.isEmpty())
        return m_error;
    return m_request.kind == Kind::MissingLinks ? tr("No missing links.")
           : m_request.kind == Kind::LinksFrom  ? tr("This page has no links.")
                                                : tr("No file links to this item.");
}

QString LinkReportPanel::countsText() const
{
    const std::size_t all = m_model->rowCountOfReport();
    if (all == 0)
        return {};
    const std::size_t links = m_model->linkCount();
    const std::size_t whole = all - links;
    const std::size_t named = whole - m_model->unreadableCount();
    QString text = m_request.kind == Kind::MissingLinks
                       ? counted(links, tr("missing link"), tr("missing links"))
                       : counted(links, tr("link"), tr("links"));
    text = tr("%1 in %2").arg(text, counted(m_model->pages().size() - whole, tr("page"), tr("pages")));
    if (named > 0)
        text += tr("; %1 with the name").arg(counted(named, tr("file"), tr("files")));
    if (m_model->unreadableCount() > 0)
        text += tr("; %1 can't be read").arg(counted(m_model->unreadableCount(), tr("page"), tr("pages")));
    if (m_model->shownCount() != all)
        text += tr("; %1 shown").arg(counted(m_model->shownCount(), tr("row"), tr("rows")));
    if (m_state == State::Stopped)
        text += tr(". Stopped before all pages were checked.");
    if (!m_error.isEmpty())
        text += QLatin1Char('\n') + m_error;
    return text;
}

} // namespace luma
