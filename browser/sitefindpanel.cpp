// SPDX-License-Identifier: GPL-3.0-or-later
#include "browser/sitefindpanel.h"

#include "base/pathbelow.h"
#include "base/pathtext.h"
#include "browser/countedtext.h"
#include "browser/displaytext.h"
#include "browser/foundplaces.h"

#include "ui_SiteFindPanel.h"

#include <QAction>
#include <QElapsedTimer>

#include <algorithm>

namespace luma {

namespace {

// In milliseconds.
constexpr int firstBatchInterval = 40;
constexpr int typingDelay = 150;

std::string folderIn(const QString& text)
{
    std::string folder = pathOf(text.trimmed()).lexically_normal().native();
    while (folder.ends_with('/'))
        folder.pop_back();
    while (folder.starts_with('/'))
        folder.erase(0, 1);
    return folder == "." ? std::string() : folder;
}

} // namespace

SiteFindPanel::SiteFindPanel(QWidget* parent)
    : QDialog(parent),
      m_ui(std::make_unique<Ui::SiteFindPanel>()),
      m_places(new FoundPlaces(this)),
      m_run(new SiteFindRun(this))
{
    m_ui->setupUi(this);
    m_ui->siteFindView->setPlaces(*m_places);
    m_ui->siteFindPlaceholder->setBackgroundRole(QPalette::Base);
    m_ui->siteFindPlaceholder->setForegroundRole(QPalette::PlaceholderText);
    QSizePolicy policy = m_ui->siteFindProgressIndicator->sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    m_ui->siteFindProgressIndicator->setSizePolicy(policy);
    auto* const filter = new QAction(this);
    filter->setObjectName(QStringLiteral("siteFindFilterAction"));
    filter->setShortcut(QKeySequence::Find);
    connect(filter, &QAction::triggered, m_ui->siteFindFilter, qOverload<>(&QWidget::setFocus));
    addAction(filter);
    connectControls();
    connectRun();
    showReplacement();
}

SiteFindPanel::~SiteFindPanel() = default;

void SiteFindPanel::connectControls()
{
    connect(m_ui->siteFindButton, &QPushButton::clicked, this, &SiteFindPanel::find);
    connect(m_ui->siteFindField, &QLineEdit::returnPressed, this, &SiteFindPanel::find);
    connect(m_ui->siteFindFolder, &QLineEdit::returnPressed, this, &SiteFindPanel::find);
    connect(m_ui->siteFindField, &QLineEdit::textChanged, this, &SiteFindPanel::updateControls);
    connect(m_ui->siteFindSearched, &QComboBox::currentIndexChanged, this, &SiteFindPanel::updateControls);
    connect(m_ui->siteFindStopButton, &QPushButton::clicked, this, &SiteFindPanel::stop);
    connect(m_ui->siteFindCloseButton, &QPushButton::clicked, this, &SiteFindPanel::reject);
    connect(m_ui->siteFindReplaceButton, &QPushButton::clicked, this, &SiteFindPanel::replace);
    connect(m_ui->siteFindReplaces, &QCheckBox::toggled, m_ui->siteFindReplacement, &QWidget::setEnabled);
    connect(m_ui->siteFindReplaces, &QCheckBox::toggled, this, &SiteFindPanel::showReplacement);
    connect(m_ui->siteFindReplacement, &QLineEdit::textChanged, this, &SiteFindPanel::showReplacement);
    connect(m_ui->siteFindView, &FoundPlacesView::rowActivated, this, &SiteFindPanel::activate);
    connect(m_places, &FoundPlaces::ticksChanged, this, &SiteFindPanel::updateControls);
    m_filterTimer.setSingleShot(true);
    m_filterTimer.setInterval(typingDelay);
    connect(m_ui->siteFindFilter, &QLineEdit::textChanged, &m_filterTimer, qOverload<>(&QTimer::start));
    connect(&m_filterTimer, &QTimer::timeout, this, [this] {
        m_places->setFilter(m_ui->siteFindFilter->text());
        updateControls();
    });
}

void SiteFindPanel::connectRun()
{
    connect(&m_showTimer, &QTimer::timeout, this, &SiteFindPanel::showFound);
    connect(m_run, &SiteFindRun::ended, this, &SiteFindPanel::end);
}

void SiteFindPanel::begin(const std::filesystem::path& site, const QString& text)
{
    if (site != m_site) {
        stop();
        m_site = site;
        m_places->clear();
        m_state = State::Idle;
    }
    m_ui->siteFindTitle->setText(displayText(m_site.native()));
    if (!text.isEmpty())
        m_ui->siteFindField->setText(text);
    updateControls();
    show();
    raise();
    activateWindow();
    m_ui->siteFindField->setFocus();
    m_ui->siteFindField->selectAll();
}

SiteQuery SiteFindPanel::query() const
{
    SiteQuery query;
    query.text = {m_ui->siteFindField->text(), m_ui->siteFindExpressionButton->isChecked(),
                  m_ui->siteFindCaseButton->isChecked(), m_ui->siteFindWordsButton->isChecked()};
    const bool isShown = m_ui->siteFindSearched->currentIndex() == 0;
    query.searched = isShown ? SearchedText::Shown : SearchedText::Source;
    query.inPages = isShown || m_ui->siteFindPages->isChecked();
    query.inStyleSheets = m_ui->siteFindStyleSheets->isChecked();
    query.inScripts = m_ui->siteFindScripts->isChecked();
    query.folder = folderIn(m_ui->siteFindFolder->text());
    return query;
}

void SiteFindPanel::find()
{
    if (m_ui->siteFindField->text().isEmpty())
        return;
    m_query = query();
    m_isReplaced = false;
    search();
}

void SiteFindPanel::search()
{
    m_run->stop();
    m_places->clear();
    m_error.clear();
    m_state = State::Running;
    m_showTimer.start(firstBatchInterval);
    m_run->start(m_site, m_query);
    showReplacement();
}

void SiteFindPanel::showFound()
{
    QElapsedTimer timer;
    timer.start();
    const bool wasEmpty = m_places->files().empty();
    m_places->append(m_run->take());
    if (wasEmpty && m_places->rowCount() > 0)
        m_ui->siteFindView->setCurrentIndex(m_places->index(0, 0));
    updateControls();
    // A large table takes longer to show; at least nine tenths of the time remain for the user.
    m_showTimer.setInterval(std::max(firstBatchInterval, static_cast<int>(timer.elapsed()) * 10));
}

void SiteFindPanel::end(const QString& error)
{
    m_error = error;
    m_showTimer.stop();
    m_state = State::Done;
    showFound();
}

void SiteFindPanel::stop()
{
    m_showTimer.stop();
    if (m_state == State::Running) {
        m_state = State::Stopped;
        showFound();
    }
    m_run->stop();
}

void SiteFindPanel::filesChanged(const std::shared_ptr<const LinksUpdate>& update)
{
    const auto isInside = [this](const std::filesystem::path& file) {
        return isAtOrBelow(file.native(), m_site.native());
    };
    const bool isConcerned =
        std::any_of(update->items.begin(), update->items.end(),
                    [&](const MovedItem& item) { return isInside(item.from) || isInside(item.to); }) ||
        std::any_of(update->files.begin(), update->files.end(),
                    [&](const LinksUpdate::File& file) { return isInside(file.path); });
    if (isConcerned && isVisible() && m_state != State::Idle)
        search();
}

void SiteFindPanel::reject()
{
    stop();
    QDialog::reject();
}

void SiteFindPanel::activate(const QModelIndex& row)
{
    const SearchedFile* const file = m_places->fileOf(row);
    const FoundText* const place = m_places->placeOf(row);
    if (file)
        emit pageActivated(m_site / file->path, place ? place->line : 0, place ? place->column : 0);
}

void SiteFindPanel::replace()
{
    if (const std::vector<WantedPlaces> wanted = m_places->wanted(); !wanted.empty()) {
        m_isReplaced = true;
        emit replacementRequested(m_query, m_ui->siteFindReplacement->text(), wanted);
    }
}

void SiteFindPanel::showReplacement()
{
    const bool isReplacing = m_ui->siteFindReplaces->isChecked();
    m_places->setReplacement(isReplacing ? std::optional(m_ui->siteFindReplacement->text()) : std::nullopt,
                             m_query.text.isExpression);
    m_ui->siteFindView->setColumnHidden(FoundPlaces::NewText, !isReplacing);
    updateControls();
}

void SiteFindPanel::updateControls()
{
    const FoundPlaces::Counts counts = m_places->counts();
    const bool isRunning = m_state == State::Running;
    const bool isSource = m_ui->siteFindSearched->currentIndex() == 1;
    for (QWidget* const kind : {m_ui->siteFindPages, m_ui->siteFindStyleSheets, m_ui->siteFindScripts})
        kind->setEnabled(isSource);
    m_ui->siteFindButton->setEnabled(!m_ui->siteFindField->text().isEmpty());
    m_ui->siteFindProgressIndicator->setVisible(isRunning);
    m_ui->siteFindStopButton->setEnabled(isRunning);
    m_ui->siteFindReplaceButton->setEnabled(!isRunning && m_ui->siteFindReplaces->isChecked() &&
                                            counts.ticked > 0);
    const bool hasRows = m_places->rowCount() > 0;
    m_ui->siteFindStack->setCurrentWidget(hasRows ? static_cast<QWidget*>(m_ui->siteFindView)
                                                  : m_ui->siteFindPlaceholder);
    m_ui->siteFindPlaceholder->setText(placeholderText());
    m_ui->siteFindNote->setText(countsText());
}

QString SiteFindPanel::placeholderText() const
{
    if (!m_places->files().empty())
        return tr("No row matches the filter.");
    switch (m_state) {
    case State::Idle:
        return tr("Enter a text and press Return to look for it in all pages of the site.");
    case State::Running:
        return tr("Looking through the files of the site");
    case State::Stopped:
        return tr("Stopped before all files were searched.");
    default:
        if (!m_error.isEmpty())
            return m_error;
        return m_isReplaced ? tr("Everything is replaced. Undo in the site's window takes it back.")
                            : tr("Not found.");
    }
}

QString SiteFindPanel::countsText() const
{
    const FoundPlaces::Counts counts = m_places->counts();
    if (m_places->files().empty())
        return {};
    QString text = tr("%1 in %2")
                       .arg(counted(counts.places, tr("place"), tr("places")),
                            counted(counts.files, tr("file"), tr("files")));
    if (m_ui->siteFindReplaces->isChecked())
        text += tr("; %1 ticked in %2")
                    .arg(QLocale().toString(static_cast<qulonglong>(counts.ticked)),
                         counted(counts.tickedFiles, tr("file"), tr("files")));
    if (counts.shown != counts.places)
        text += tr("; %1 shown").arg(QLocale().toString(static_cast<qulonglong>(counts.shown)));
    if (counts.unread > 0)
        text += tr("; %1 can't be searched").arg(counted(counts.unread, tr("file"), tr("files")));
    if (m_state == State::Stopped)
        text += tr(". Stopped before all files were searched.");
    return m_error.isEmpty() ? text : text + u'\n' + m_error;
}

} // namespace luma
