// SPDX-License-Identifier: GPL-3.0-or-later
#include "browser/planpreview.h"

#include "browser/countedtext.h"
#include "browser/displaytext.h"
#include "browser/linkplanmodel.h"
#include "links/movejob.h"

#include "ui_PlanPreview.h"

#include <QHeaderView>
#include <QStyle>

namespace luma {

PlanPreview::PlanPreview(std::shared_ptr<const LinkPlan> plan, std::optional<int> askAbove, QWidget* parent)
    : QDialog(parent), m_ui(std::make_unique<Ui::PlanPreview>()), m_plan(std::move(plan))
{
    m_ui->setupUi(this);
    setWindowModality(Qt::WindowModal);
    setAttribute(Qt::WA_DeleteOnClose);
    m_ui->planTitle->setText(displayText(titleOf(*m_plan)));
    m_ui->planNote->setText(countsText());
    m_ui->planAsks->setVisible(askAbove.has_value());
    const auto most = static_cast<std::size_t>(askAbove.value_or(0));
    m_ui->planAsks->setText(
        tr("&Ask before changing more than %1").arg(counted(most, tr("page"), tr("pages"))));
    m_ui->planAcceptButton->setText(u'&' + actionName(*m_plan));
    const bool isMove = !m_plan->text && !m_plan->request.itemsStay() && !m_plan->request.items.empty();
    if (m_plan->text) {
        setWindowTitle(actionName(*m_plan));
        m_ui->planTable->setAccessibleName(tr("Places that change"));
    }
    m_ui->planAcceptButton->setEnabled(isMove || !m_plan->pages.empty() || !m_plan->symlinks.empty());
    setUpTable();
    const std::vector<std::filesystem::path> stayingPages = m_plan->stayingPages();
    m_ui->planWarning->setVisible(!stayingPages.empty());
    if (!stayingPages.empty())
        warn(stayingPages);
    connect(m_ui->planAcceptButton, &QPushButton::clicked, this, &QDialog::accept);
    connect(m_ui->planCancelButton, &QPushButton::clicked, this, &QDialog::reject);
    connect(this, &QDialog::accepted, this, [this] {
        if (!m_ui->planAsks->isChecked())
            emit askingStopped();
    });
}

PlanPreview::~PlanPreview() = default;

PlanPreview::ActionNames PlanPreview::actionNames(const LinkPlan& plan)
{
    if (plan.text)
        return {displayText(plan.text->action), displayText(plan.text->anyway)};
    const std::vector<MovedItem>& items = plan.request.items;
    if (plan.request.itemsStay() || items.empty())
        return {tr("Change Links"), tr("Change Links Anyway")};
    if (plan.request.operation == MoveOperation::Copy)
        return {tr("Copy"), tr("Copy Anyway")};
    const bool isRename = items.front().from.parent_path() == items.front().to.parent_path();
    return isRename ? ActionNames{tr("Rename"), tr("Rename Anyway")}
                    : ActionNames{tr("Move"), tr("Move Anyway")};
}

QString PlanPreview::actionName(const LinkPlan& plan)
{
    return actionNames(plan).plain;
}

void PlanPreview::setUpTable()
{
    QTreeView& table = *m_ui->planTable;
    table.setModel(new LinkPlanModel(m_plan, this));
    QHeaderView& header = *table.header();
    header.setSectionsMovable(false);
    header.setSortIndicatorClearable(true);
    header.setSortIndicator(-1, Qt::AscendingOrder);
    header.setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    table.setSortingEnabled(true);
    const int letter = fontMetrics().averageCharWidth();
    table.setColumnWidth(LinkPlanModel::Page, letter * 34);
    table.setColumnWidth(LinkPlanModel::Line, letter * 9);
    table.setColumnWidth(LinkPlanModel::OldLink, letter * 38);
    table.setFocus();
}

void PlanPreview::warn(const std::vector<std::filesystem::path>& stayingPages)
{
    constexpr std::size_t most = 3;
    QStringList names;
    for (std::size_t i = 0; i < std::min(most, stayingPages.size()); ++i)
        names.append(displayText(stayingPages[i].lexically_relative(m_plan->request.site).native()));
    QString text = names.join(QStringLiteral(", "));
    if (stayingPages.size() > most)
        text = tr("%1 and %2").arg(text, counted(stayingPages.size() - most, tr("other"), tr("others")));
    text = m_plan->text ? tr("Can't be changed or read: %1. If you go on, they stay as they are.").arg(text)
                        : tr("Can't be changed or read: %1. If you go on, links there may break.").arg(text);
    m_ui->planWarningText->setText(text);
    const int size = style()->pixelMetric(QStyle::PM_LargeIconSize, nullptr, this);
    m_ui->planWarningIcon->setPixmap(style()
                                         ->standardIcon(QStyle::SP_MessageBoxWarning, nullptr, this)
                                         .pixmap(QSize(size, size), devicePixelRatioF()));
    m_ui->planAcceptButton->setText(u'&' + actionNames(*m_plan).anyway);
    m_ui->planAcceptButton->setAutoDefault(false);
    m_ui->planAcceptButton->setDefault(false);
    m_ui->planCancelButton->setDefault(true);
    m_ui->planCancelButton->setFocus();
    // Screen readers read it when the sheet opens.
    setAccessibleDescription(text);
}

QString PlanPreview::countsText() const
{
    QString text = m_plan->text ? tr("%1 in %2 will change.")
                                      .arg(counted(m_plan->text->places, tr("place"), tr("places")),
                                           counted(m_plan->pages.size(), tr("file"), tr("files")))
                                : tr("%1 on %2 will change.")
                                      .arg(counted(m_plan->linkCount(), tr("link"), tr("links")),
                                           counted(m_plan->pages.size(), tr("page"), tr("pages")));
    if (const std::size_t links = m_plan->symlinks.size(); links > 0)
        text += u' ' + (links == 1 ? tr("A symbolic link will get a new target.")
                                   : tr("%1 symbolic links will get new targets.").arg(links));
    if (const LostLinks& lost = m_plan->lost; lost.links > 0)
        text += u' ' + tr("In the site that is left, %1 on %2 will be missing.")
                           .arg(counted(lost.links, tr("link"), tr("links")),
                                counted(lost.pages, tr("page"), tr("pages")));
    return text + u' ' + tr("Edit > Undo takes it back.");
}

} // namespace luma
