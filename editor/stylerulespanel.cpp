// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/stylerulespanel.h"

#include "base/pathtext.h"
#include "editor/boxpanel.h"
#include "editor/boxview.h"
#include "editor/classsheet.h"
#include "editor/cssvocabulary.h"
#include "editor/declarationdelegate.h"
#include "editor/outlinemodel.h"
#include "editor/outlineselection.h"
#include "editor/stylecolours.h"
#include "editor/styleedits.h"
#include "editor/stylerulesmodel.h"
#include "editor/stylerulesreader.h"
#include "html/cssreferences.h"
#include "html/element.h"
#include "page/subtreechange.h"
#include "page/tagrules.h"
#include "web/viewcontroller.h"

#include <QEvent>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QSortFilterProxyModel>
#include <QTabWidget>
#include <QToolButton>
#include <QTreeView>

#include <algorithm>

namespace luma {

namespace {

constexpr int delayAfterRuleChange = 150; // milliseconds

} // namespace

StyleRulesPanel::StyleRulesPanel(const Controls& controls, const Parts& parts, QObject* parent)
    : QObject(parent),
      m_controls(controls),
      m_parts(parts),
      m_model(new StyleRulesModel(this)),
      m_colours(new StyleColours(*controls.rules, *m_model, parts.rendering, this)),
      m_computed(new QStandardItemModel(0, 2, this)),
      m_newRuleMenu(new QMenu(controls.newRuleButton)),
      m_box(new BoxPanel(*controls.box, {parts.rendering, parts.reader, parts.edits, parts.vocabulary}, this))
{
    createViews();
    createStates();
    m_delay.setSingleShot(true);
    m_delay.setInterval(delayAfterRuleChange);
    connect(&m_delay, &QTimer::timeout, this, &StyleRulesPanel::read);
    connect(&parts.selection, &OutlineSelection::changed, this, &StyleRulesPanel::noteChange);
    connect(&parts.reader, &StyleRulesReader::done, this, &StyleRulesPanel::show);
    connect(m_model, &StyleRulesModel::valueChosen, this, &StyleRulesPanel::setValue, Qt::QueuedConnection);
    connect(m_colours, &StyleColours::valueChosen, this, &StyleRulesPanel::setValue);
    connect(m_model, &StyleRulesModel::switchChosen, this, &StyleRulesPanel::switchDeclaration,
            Qt::QueuedConnection);
    connect(m_model, &StyleRulesModel::declarationTyped, this, &StyleRulesPanel::add, Qt::QueuedConnection);
    connect(m_controls.pages, &QTabWidget::currentChanged, this, &StyleRulesPanel::noteChange);
    connect(m_box, &BoxPanel::refused, this, &StyleRulesPanel::refused);
    connect(m_controls.box, &BoxView::hovered, this,
            [this](BoxOverlay::Part part) { emit partHovered(m_row, part); });
    connect(m_controls.box, &BoxView::left, this, [this] { emit partHovered({}, BoxOverlay::Part::All); });
    m_controls.newRuleButton->setMenu(m_newRuleMenu);
    connect(m_newRuleMenu, &QMenu::aboutToShow, this, &StyleRulesPanel::fillNewRuleMenu);
}

void StyleRulesPanel::createViews()
{
    QTreeView& rules = *m_controls.rules;
    rules.setModel(m_model);
    rules.setItemDelegate(
        new DeclarationDelegate(*m_model, *m_colours, m_parts.vocabulary, m_parts.rendering, this));
    rules.installEventFilter(this);
    m_controls.pages->installEventFilter(this);
    connect(&rules, &QTreeView::collapsed, this,
            [this](const QModelIndex& row) { m_closed.insert(StyleRulesModel::keyOf(row)); });
    connect(&rules, &QTreeView::expanded, this,
            [this](const QModelIndex& row) { m_closed.remove(StyleRulesModel::keyOf(row)); });
    m_computed->setHorizontalHeaderLabels({StyleRulesModel::tr("Property"), StyleRulesModel::tr("Value")});
    auto* const filtered = new QSortFilterProxyModel(this);
    filtered->setSourceModel(m_computed);
    filtered->setFilterCaseSensitivity(Qt::CaseInsensitive);
    filtered->setFilterKeyColumn(-1);
    m_controls.computed->setModel(filtered);
    connect(m_controls.filter, &QLineEdit::textChanged, filtered,
            &QSortFilterProxyModel::setFilterFixedString);
    m_controls.computed->setMinimumHeight(5 * m_controls.computed->fontMetrics().lineSpacing());
    for (QTreeView* const view : {&rules, m_controls.computed}) {
        view->header()->setStretchLastSection(true);
        view->viewport()->installEventFilter(this);
        fitColumns(*view);
    }
}

// In a narrow panel, names leave enough to the values.
void StyleRulesPanel::fitColumns(QTreeView& view)
{
    view.header()->resizeSection(
        StyleRulesModel::NameColumn,
        std::min(view.fontMetrics().averageCharWidth() * 24, view.viewport()->width() * 11 / 20));
}

void StyleRulesPanel::createStates()
{
    auto* const menu = new QMenu(m_controls.statesButton);
    menu->setObjectName(QStringLiteral("statesMenu"));
    for (const char* const name :
         {"hover", "active", "focus", "focus-visible", "focus-within", "target", "visited"}) {
        QAction* const action = menu->addAction(u':' + QLatin1String(name), this, &StyleRulesPanel::read);
        action->setCheckable(true);
        action->setData(QLatin1String(name));
    }
    m_controls.statesButton->setMenu(menu);
}

void StyleRulesPanel::forceStates(const std::optional<std::vector<int>>& path)
{
    QStringList chosen;
    const QList<QAction*> actions = m_controls.statesButton->menu()->actions();
    for (const QAction* const action : actions) {
        if (action->isChecked())
            chosen.append(u'\'' + action->data().toString() + u'\'');
    }
    QStringList steps;
    for (const int step : path.value_or(std::vector<int>()))
        steps.append(QString::number(step));
    m_controls.statesButton->setChecked(!chosen.isEmpty());
    const bool isForced = path && !chosen.isEmpty();
    if (isForced || m_forcesStates)
        m_parts.rendering.evaluate(QStringLiteral("forceStates([%1], [%2])")
                                       .arg(steps.join(u','), isForced ? chosen.join(u',') : QString()));
    m_forcesStates = isForced;
}

bool StyleRulesPanel::isEditing() const
{
    return m_controls.rules->findChild<QLineEdit*>() || m_colours->isOpen() || m_controls.box->isEditing();
}

bool StyleRulesPanel::isVisible() const
{
    return m_controls.pages->isVisible();
}

void StyleRulesPanel::noteChange()
{
    if (isVisible())
        m_delay.start();
}

// The rows are not changed under the user's hands.
void StyleRulesPanel::read()
{
    if (!isVisible())
        return;
    if (isEditing()) {
        m_delay.start();
        return;
    }
    m_parts.rendering.whenCaughtUp(this, [this] {
        const html::Element* const element = m_parts.selection.element();
        const auto path = element ? luma::pathOf(*element) : std::nullopt;
        m_controls.title->setText(element ? tr("Style rules of <%1>").arg(tagNameOf(*element))
                                          : tr("Style rules"));
        m_controls.newRuleButton->setEnabled(path.has_value());
        m_controls.statesButton->setEnabled(path.has_value());
        forceStates(path);
        m_row = m_parts.selection.index();
        m_box->setRow(m_row);
        if (path) {
            m_parts.reader.read(*path);
            readComputed();
            return;
        }
        show({});
        m_box->show({});
        m_computed->setRowCount(0);
    });
}

void StyleRulesPanel::readComputed()
{
    const html::Element* const element = m_parts.selection.element();
    const auto path = element ? pathForScript(*element) : std::nullopt;
    if (path && m_controls.box->isVisible())
        m_parts.rendering.ask(QStringLiteral("computedStyles(%1)").arg(*path), this,
                              [this](const QVariant& answer) { showComputed(answer); });
}

void StyleRulesPanel::showComputed(const QVariant& answer)
{
    const QVariantList styles = answer.toList();
    const bool isSameList = styles.size() == m_computed->rowCount();
    if (!isSameList)
        m_computed->setRowCount(static_cast<int>(styles.size()));
    for (int row = 0; row < m_computed->rowCount(); ++row) {
        const QStringList style = styles[row].toStringList();
        for (int column = 0; column < 2; ++column) {
            QStandardItem* item = m_computed->item(row, column);
            if (!item) {
                item = new QStandardItem;
                item->setEditable(false);
                m_computed->setItem(row, column, item);
            }
            if (item->text() != style.value(column)) {
                item->setText(style.value(column));
                item->setToolTip(style.value(column).toHtmlEscaped());
            }
        }
    }
}

void StyleRulesPanel::show(const std::vector<StyleGroup>& groups)
{
    QTreeView& view = *m_controls.rules;
    if (isEditing()) {
        m_delay.start();
        return;
    }
    // An edit of the box has its element's rules read.
    const html::Element* const element = OutlineModel::elementAt(m_row);
    if (element && !groups.empty() && pathOf(*element) != m_parts.reader.path())
        return;
    if (m_controls.box->isVisible())
        m_box->show(groups);
    const QString current = StyleRulesModel::keyOf(view.currentIndex());
    const int column = view.currentIndex().column();
    const QModelIndex top = view.indexAt({0, 0});
    const QString topKey = StyleRulesModel::keyOf(top);
    const QSet<QString> closed = m_closed;
    m_model->setGroups(groups);
    for (int i = 0; i < m_model->rowCount(); ++i) {
        const QModelIndex row = m_model->index(i, 0);
        if (StyleRulesModel::kindOf(row) == StyleRulesModel::Row::Heading)
            view.setFirstColumnSpanned(i, {}, true);
        for (int k = 0; k < m_model->rowCount(row); ++k) {
            if (StyleRulesModel::kindOf(m_model->index(k, 0, row)) != StyleRulesModel::Row::Declaration)
                view.setFirstColumnSpanned(k, row, true);
        }
        view.setExpanded(row, !closed.contains(StyleRulesModel::keyOf(row)));
    }
    m_closed = closed;
    if (const QModelIndex row = m_model->rowOf(topKey); row.isValid())
        view.scrollTo(row, QAbstractItemView::PositionAtTop);
    const QModelIndex row = m_model->rowOf(current);
    view.setCurrentIndex(row.isValid() ? row.siblingAtColumn(column) : m_model->index(0, 0));
}

void StyleRulesPanel::setValue(const QModelIndex& index, const QString& value)
{
    const StyleRule* const rule = m_model->ruleOf(index);
    const int number = StyleRulesModel::declarationOf(index);
    if (!rule || number < 0)
        return;
    const CssDeclaration& declaration = rule->rule.declarations[static_cast<std::size_t>(number)];
    if (value.isEmpty())
        remove(index);
    else
        m_parts.edits.make(rule->source, rule->sheet,
                           withCssValue(rule->sheet, declaration, value.toStdString()), tr("Change Style"));
    noteChange();
}

void StyleRulesPanel::switchDeclaration(const QModelIndex& index)
{
    const StyleRule* const rule = m_model->ruleOf(index);
    const int number = StyleRulesModel::declarationOf(index);
    if (!rule || number < 0)
        return;
    const CssDeclaration& declaration = rule->rule.declarations[static_cast<std::size_t>(number)];
    m_parts.edits.make(rule->source, rule->sheet, withCssSwitched(rule->sheet, declaration),
                       declaration.isOff ? tr("Switch Style On") : tr("Switch Style Off"));
    noteChange();
}

void StyleRulesPanel::add(const QModelIndex& index, const QString& text)
{
    const StyleRule* const rule = m_model->ruleOf(index);
    if (!rule)
        return;
    const bool isAttribute = rule->source.kind == StyleSource::Kind::Attribute;
    m_parts.edits.make(
        rule->source, rule->sheet,
        withCssDeclaration(rule->sheet, isAttribute ? nullptr : &rule->rule, text.toStdString()),
        tr("Add Style"));
    noteChange();
}

void StyleRulesPanel::remove(const QModelIndex& index)
{
    const StyleRule* const rule = m_model->ruleOf(index);
    const int number = StyleRulesModel::declarationOf(index);
    if (!rule || number < 0 || !rule->isEditable)
        return;
    m_parts.edits.make(
        rule->source, rule->sheet,
        withoutCssDeclaration(rule->sheet, rule->rule.declarations[static_cast<std::size_t>(number)]),
        tr("Remove Style"));
    noteChange();
}

void StyleRulesPanel::fillNewRuleMenu()
{
    m_newRuleMenu->clear();
    const html::Element* const element = OutlineModel::elementAt(m_row);
    if (!element)
        return;
    QStringList selectors;
    const QString classes = QString::fromStdString(std::string(element->attr("class"))).simplified();
    for (const QString& name : classes.split(u' ', Qt::SkipEmptyParts))
        selectors.append(u'.' + name);
    if (element->hasAttr("id"))
        selectors.append(u'#' + QString::fromStdString(std::string(element->attr("id"))));
    selectors.append(tagNameOf(*element));
    const auto sheet = m_parts.reader.newRuleSheet();
    for (const QString& selector : selectors) {
        QAction* const action =
            m_newRuleMenu->addAction(QString(selector).replace(u'&', QStringLiteral("&&")), this,
                                     [this, selector] { addRule(selector); });
        action->setEnabled(sheet.has_value());
    }
    if (!sheet)
        m_newRuleMenu->addAction(tr("The page has no style sheet of its site"))->setEnabled(false);
    m_newRuleMenu->addSeparator();
    QAction* const move =
        m_newRuleMenu->addAction(tr("&Move Inline Style to a Class..."), this, &StyleRulesPanel::askForClass);
    move->setEnabled(sheet && !readCssDeclarations(std::string(element->attr("style"))).empty());
}

void StyleRulesPanel::askForClass()
{
    m_parts.vocabulary.ask(this, [this, row = m_row](const CssVocabulary::Words& words) {
        const auto sheets = m_parts.reader.sheets();
        if (OutlineModel::elementAt(row) && row == m_row && !sheets.empty())
            askForClassIn(sheets, QSet<QString>(words.classes.begin(), words.classes.end()));
    });
}

void StyleRulesPanel::askForClassIn(const std::vector<std::pair<StyleSource, std::string>>& sheets,
                                    const QSet<QString>& known)
{
    QStringList titles;
    for (const auto& [source, text] : sheets)
        titles.append(source.kind == StyleSource::Kind::File ? textOf(source.file.filename())
                                                             : tr("style element of the page"));
    if (!m_classSheet)
        m_classSheet = new ClassSheet(m_controls.newRuleButton->window());
    disconnect(m_classSheet, &ClassSheet::confirmed, this, nullptr);
    connect(m_classSheet, &ClassSheet::confirmed, this,
            [this, row = m_row, sheets](const QString& name, int sheet) {
                const auto& [source, text] = sheets[static_cast<std::size_t>(sheet)];
                m_parts.edits.moveToClass(row, source, text, name);
                noteChange();
            });
    m_classSheet->begin(titles, known, m_parts.place().folder(), m_parts.linkRules());
}

void StyleRulesPanel::addRule(const QString& selector)
{
    const auto sheet = m_parts.reader.newRuleSheet();
    if (!sheet)
        return;
    // What is no plain name is escaped (CSSOM, "serialize an identifier").
    const std::string mark = selector.startsWith(u'.') || selector.startsWith(u'#')
                                 ? selector.left(1).toStdString()
                                 : std::string();
    const std::string name = selector.toStdString().substr(mark.size());
    m_parts.edits.make(sheet->first, sheet->second,
                       withCssRule(sheet->second, mark + cssIdentifier(name), {}), tr("New Rule"));
    m_controls.pages->setCurrentIndex(0);
    noteChange();
}

bool StyleRulesPanel::takeKey(int key, Qt::KeyboardModifiers modifiers)
{
    QTreeView& view = *m_controls.rules;
    const QModelIndex index = view.currentIndex();
    // The field that is open hands on the key that closes it.
    if (view.findChild<QLineEdit*>())
        return false;
    const auto kind = StyleRulesModel::kindOf(index);
    if (key == Qt::Key_Down && modifiers.testFlag(Qt::AltModifier)) {
        m_colours->pick(index);
        return true;
    }
    switch (key) {
    case Qt::Key_Delete:
    case Qt::Key_Backspace:
        remove(index);
        return true;
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_F2:
        if (kind == StyleRulesModel::Row::Declaration)
            view.edit(index.siblingAtColumn(StyleRulesModel::ValueColumn));
        else if (kind == StyleRulesModel::Row::NewDeclaration)
            view.edit(index.siblingAtColumn(StyleRulesModel::NameColumn));
        else
            view.setExpanded(index.siblingAtColumn(0), !view.isExpanded(index.siblingAtColumn(0)));
        return true;
    case Qt::Key_Space:
        if (kind == StyleRulesModel::Row::Declaration)
            switchDeclaration(index.siblingAtColumn(0));
        return true;
    default:
        return false;
    }
}

bool StyleRulesPanel::eventFilter(QObject* watched, QEvent* event)
{
    // Colours of texts are of the palette that was there when the rules were read.
    if (watched == m_controls.pages &&
        (event->type() == QEvent::Show || event->type() == QEvent::PaletteChange))
        QMetaObject::invokeMethod(this, &StyleRulesPanel::noteChange, Qt::QueuedConnection);
    // Only then are the views surely there: a window that is deleted tells of its parts, too.
    if (event->type() == QEvent::Resize) {
        for (QTreeView* const view : {m_controls.rules, m_controls.computed}) {
            if (watched == view->viewport())
                fitColumns(*view);
        }
    }
    // Queued, as the window may be closing.
    if (watched == m_controls.pages && event->type() == QEvent::Hide)
        QMetaObject::invokeMethod(
            this, [this] { forceStates({}); }, Qt::QueuedConnection);
    return watched == m_controls.rules && event->type() == QEvent::KeyPress &&
           m_controls.rules->currentIndex().isValid() &&
           takeKey(static_cast<const QKeyEvent*>(event)->key(),
                   static_cast<const QKeyEvent*>(event)->modifiers());
}

} // namespace luma
