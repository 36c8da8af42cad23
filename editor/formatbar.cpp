// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/formatbar.h"

#include "desktop/icons.h"
#include "web/viewcontroller.h"

#include <QComboBox>
#include <QLabel>
#include <QMenu>
#include <QStyle>
#include <QToolBar>
#include <QToolButton>

namespace luma {

namespace {

constexpr const char* blockFormats[] = {"Paragraph", "Heading 1", "Heading 2", "Heading 3",
                                        "Heading 4", "Heading 5", "Heading 6", "Preformatted"};

struct FormatIcon
{
    const char* title;
    const char* icon;
};

constexpr FormatIcon alignmentIcons[] = {{"Justify Left", "align-left"},
                                         {"Justify Center", "align-center"},
                                         {"Justify Right", "align-right"},
                                         {"Justify Full", "align-full"}};

QIcon symbol(const char* name)
{
    return icons::symbol(QString::fromLatin1(name));
}

QToolButton* menuButton(QMenu& menu, const char* icon)
{
    menu.setIcon(symbol(icon));
    auto* const button = new QToolButton;
    button->setObjectName(menu.objectName() + QStringLiteral("Button"));
    button->setAccessibleName(menu.title());
    button->setToolTip(menu.title());
    button->setIcon(menu.icon());
    button->setPopupMode(QToolButton::InstantPopup);
    button->setMenu(&menu);
    return button;
}

QAction* formatIn(const QMenu& menu, const char* title)
{
    return menu.findChild<QAction*>(QString::fromLatin1(title));
}

} // namespace

FormatBar::FormatBar(const Parts& parts, QObject* parent) : QObject(parent), m_parts(parts)
{
    // Small ones, as high as the text beside them.
    const int side = parts.bar.style()->pixelMetric(QStyle::PM_SmallIconSize, nullptr, &parts.bar);
    parts.bar.setIconSize({side, side});
    for (const FormatIcon& each : alignmentIcons)
        formatIn(*parts.rendering.justificationSubMenu(), each.title)->setIcon(symbol(each.icon));
    createBlockBox();
    fillBar();
    fillMenu();
    connect(&parts.rendering, &ViewController::formatsChanged, this, &FormatBar::show);
}

void FormatBar::createBlockBox()
{
    m_blocks = new QComboBox;
    // A screen reader takes a box's own name for its value.
    auto* const label = new QLabel(tr("Block format"), &m_parts.bar);
    label->hide();
    label->setBuddy(m_blocks);
    m_blocks->setObjectName(QStringLiteral("blockFormatBox"));
    m_blocks->setToolTip(tr("Make the selected blocks paragraphs, headings or preformatted text"));
    m_blocks->setPlaceholderText(tr("Block format"));
    const QMenu& formats = *m_parts.rendering.fontSubMenu();
    for (const char* const title : blockFormats)
        m_blocks->addItem(formatIn(formats, title)->text(), QString::fromLatin1(title));
    m_blocks->setCurrentIndex(-1);
    connect(m_blocks, &QComboBox::activated, this, &FormatBar::applyBlock);
}

void FormatBar::fillBar()
{
    QToolBar& bar = m_parts.bar;
    QMenu& styles = *m_parts.rendering.fontSubMenu();
    m_justification = menuButton(*m_parts.rendering.justificationSubMenu(), "align-left");
    QAction* const bulletList = formatIn(styles, "Unordered List");
    QAction* const numberedList = formatIn(styles, "Ordered List");
    bulletList->setIcon(symbol("bullet-list"));
    numberedList->setIcon(symbol("numbered-list"));
    const QList<QAction*> given = bar.actions();
    bar.insertWidget(given.constFirst(), m_blocks);
    QAction* const behind = given.value(given.indexOf(m_parts.styles.constLast()) + 1);
    bar.insertWidget(behind, menuButton(styles, "text-style"));
    bar.insertActions(behind, {bulletList, numberedList});
    bar.insertWidget(behind, m_justification);
}

void FormatBar::fillMenu()
{
    QMenu& menu = m_parts.menu;
    QAction* const first = menu.actions().constFirst();
    menu.insertMenu(first, m_parts.rendering.fontSubMenu());
    menu.insertMenu(first, m_parts.rendering.justificationSubMenu());
}

void FormatBar::show(const QStringList& formats)
{
    for (QAction* const style : m_parts.styles)
        style->setChecked(formats.contains(style->property("commandWord").toString()));
    int block = -1;
    for (int entry = 0; entry < m_blocks->count(); ++entry) {
        if (formats.contains(m_blocks->itemData(entry).toString()))
            block = entry;
    }
    m_blocks->setCurrentIndex(block);
    const char* alignment = alignmentIcons[0].icon;
    for (const FormatIcon& each : alignmentIcons) {
        if (formats.contains(QLatin1String(each.title)))
            alignment = each.icon;
    }
    m_justification->setIcon(symbol(alignment));
}

void FormatBar::applyBlock(int entry)
{
    const QByteArray title = m_blocks->itemData(entry).toByteArray();
    m_parts.rendering.applyStyle(formatIn(*m_parts.rendering.fontSubMenu(), title.constData()));
    m_parts.rendering.webView()->setFocus();
}

} // namespace luma
