// SPDX-License-Identifier: GPL-3.0-or-later
#include "browser/sitenamespanel.h"

#include "base/mainhop.h"
#include "browser/countedtext.h"
#include "browser/displaytext.h"
#include "browser/sitenamesmodel.h"

#include "ui_SiteNamesPanel.h"

#include <QAction>
#include <QHeaderView>
#include <QInputDialog>
#include <QMessageBox>

#include <algorithm>

namespace luma {

namespace {

constexpr int lookAgainDelay = 500; // milliseconds

} // namespace

SiteNamesPanel::SiteNamesPanel(QWidget* parent)
    : QDialog(parent), m_ui(std::make_unique<Ui::SiteNamesPanel>()), m_model(new SiteNamesModel(this))
{
    m_ui->setupUi(this);
    m_ui->siteNamesPlaceholder->setBackgroundRole(QPalette::Base);
    m_ui->siteNamesPlaceholder->setForegroundRole(QPalette::PlaceholderText);
    QSizePolicy policy = m_ui->siteNamesProgressIndicator->sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    m_ui->siteNamesProgressIndicator->setSizePolicy(policy);
    setUpView();
    connectControls();
    updateControls();
}

SiteNamesPanel::~SiteNamesPanel()
{
    stop();
}

void SiteNamesPanel::setUpView()
{
    QTreeView& view = *m_ui->siteNamesView;
    view.setModel(m_model);
    QHeaderView& header = *view.header();
    header.setSectionsMovable(false);
    header.setSortIndicatorClearable(true);
    header.setSortIndicator(-1, Qt::AscendingOrder);
    header.setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    view.setSortingEnabled(true);
    for (const int column : {SiteNamesModel::Rules, SiteNamesModel::Elements, SiteNamesModel::Pages})
        view.setColumnWidth(column, header.sectionSizeHint(column));
    for (const int column : {SiteNamesModel::Name, SiteNamesModel::Note})
        header.setSectionResizeMode(column, QHeaderView::Stretch);
    auto* const renameAction = new QAction(tr("&Rename..."), this);
    renameAction->setObjectName(QStringLiteral("siteNamesRenameAction"));
    renameAction->setShortcut(Qt::Key_F2);
    renameAction->setShortcutContext(Qt::WidgetShortcut);
    connect(renameAction, &QAction::triggered, this, &SiteNamesPanel::rename);
    view.addAction(renameAction);
    view.setContextMenuPolicy(Qt::ActionsContextMenu);
    auto* const find = new QAction(this);
    find->setObjectName(QStringLiteral("siteNamesFindAction"));
    find->setShortcut(QKeySequence::Find);
    connect(find, &QAction::triggered, m_ui->siteNamesFilter, qOverload<>(&QWidget::setFocus));
    addAction(find);
}

void SiteNamesPanel::connectControls()
{
    connect(m_ui->siteNamesFilter, &QLineEdit::textChanged, this, &SiteNamesPanel::filter);
    connect(m_ui->siteNamesShown, &QComboBox::currentIndexChanged, this, &SiteNamesPanel::filter);
    connect(m_ui->siteNamesView, &QTreeView::activated, this, &SiteNamesPanel::activate);
    connect(m_ui->siteNamesView->selectionModel(), &QItemSelectionModel::currentChanged, this,
            &SiteNamesPanel::updateControls);
    connect(m_ui->siteNamesRenameButton, &QPushButton::clicked, this, &SiteNamesPanel::rename);
    connect(m_ui->siteNamesCloseButton, &QPushButton::clicked, this, &SiteNamesPanel::reject);
    m_refreshTimer.setSingleShot(true);
    m_refreshTimer.setInterval(lookAgainDelay);
    connect(&m_refreshTimer, &QTimer::timeout, this, &SiteNamesPanel::look);
}

void SiteNamesPanel::begin(const std::filesystem::path& site, const WebRules& rules)
{
    m_site = site;
    m_rules = rules;
    m_model->setNames({});
    m_ui->siteNamesTitle->setText(displayText(site.native()));
    look();
    show();
    raise();
    activateWindow();
    m_ui->siteNamesView->setFocus();
}

void SiteNamesPanel::look()
{
    stop();
    m_error.clear();
    m_item = std::make_shared<WorkItem>();
    const QPointer<SiteNamesPanel> guard(this);
    luma::start(m_item, [guard, site = m_site, rules = m_rules, item = m_item](const WorkItem&) {
        auto names =
            findSiteNames(site, rules, [item] { return !item->isCancelled() && !isMainHopClosed(); });
        onMain(guard, [&](SiteNamesPanel& self) {
            if (self.m_item != item)
                return;
            self.m_item.reset();
            const bool isFirst = self.m_model->names().empty();
            if (names)
                self.m_model->setNames(*std::move(names));
            else
                self.m_error = displayText(names.error().text);
            self.updateControls();
            if (isFirst && self.m_model->shownCount() > 0) {
                self.m_ui->siteNamesView->setCurrentIndex(self.m_model->index(0, 0));
                self.m_ui->siteNamesView->setFocus();
            }
        });
    });
    updateControls();
}

void SiteNamesPanel::stop()
{
    m_refreshTimer.stop();
    if (m_item)
        m_item->cancel();
    m_item.reset();
}

void SiteNamesPanel::filesChanged()
{
    if (isVisible())
        m_refreshTimer.start();
}

void SiteNamesPanel::reject()
{
    stop();
    QDialog::reject();
}

void SiteNamesPanel::filter()
{
    m_model->setFilter(m_ui->siteNamesFilter->text(),
                       static_cast<SiteNamesModel::Shown>(m_ui->siteNamesShown->currentIndex()));
    updateControls();
}

void SiteNamesPanel::activate(const QModelIndex& row)
{
    if (const SiteName::Place* const place = m_model->placeOf(row))
        emit pageActivated(m_site / place->file, place->line, place->column);
}

void SiteNamesPanel::rename()
{
    const SiteName* const name = m_model->nameOf(m_ui->siteNamesView->currentIndex());
    if (!name)
        return;
    auto* const dialog = new QInputDialog(this);
    dialog->setObjectName(QStringLiteral("renameNameDialog"));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setWindowTitle(name->isId ? tr("Rename Id") : tr("Rename Class"));
    dialog->setLabelText(tr("New name of %1 in all pages and style sheets:").arg(displayText(name->name)));
    dialog->setTextValue(QString::fromStdString(name->name));
    connect(dialog, &QInputDialog::textValueSelected, this,
            [this, isId = name->isId, old = name->name](const QString& text) {
                if (text.toStdString() == old)
                    return;
                if (const std::string problem = problemOfName(text.toStdString()); !problem.empty()) {
                    auto* const box = new QMessageBox(QMessageBox::Warning, tr("Rename"),
                                                      displayText(problem), QMessageBox::Ok, this);
                    box->setAttribute(Qt::WA_DeleteOnClose);
                    box->open();
                    return;
                }
                emit renameRequested(isId, old, text.toStdString());
            });
    dialog->open();
}

void SiteNamesPanel::updateControls()
{
    const bool hasRows = m_model->shownCount() > 0;
    const bool isRunning = m_item != nullptr;
    m_ui->siteNamesProgressIndicator->setVisible(isRunning);
    m_ui->siteNamesRenameButton->setEnabled(m_ui->siteNamesView->currentIndex().isValid());
    m_ui->siteNamesStack->setCurrentWidget(hasRows ? static_cast<QWidget*>(m_ui->siteNamesView)
                                                   : m_ui->siteNamesPlaceholder);
    m_ui->siteNamesPlaceholder->setText(!m_error.isEmpty()          ? m_error
                                        : !m_model->names().empty() ? tr("No name matches the filter.")
                                        : isRunning ? tr("Looking through the files of the site")
                                                    : tr("The site has no classes and no ids."));
    m_ui->siteNamesNote->setText(countsText());
}

QString SiteNamesPanel::countsText() const
{
    const std::vector<SiteName>& names = m_model->names();
    if (names.empty())
        return {};
    const auto countIf = [&names](auto isCounted) {
        return static_cast<std::size_t>(std::count_if(names.begin(), names.end(), isCounted));
    };
    const std::size_t ids = countIf([](const SiteName& name) { return name.isId; });
    QString text = tr("%1, %2").arg(counted(names.size() - ids, tr("class"), tr("classes")),
                                    counted(ids, tr("id"), tr("ids")));
    const std::size_t unused = countIf([](const SiteName& name) { return name.isUnused(); });
    if (unused > 0)
        text += tr("; %1 unused").arg(QLocale().toString(static_cast<qulonglong>(unused)));
    if (m_model->shownCount() != names.size())
        text += tr("; %1 shown").arg(QLocale().toString(static_cast<qulonglong>(m_model->shownCount())));
    return text;
}

} // namespace luma
