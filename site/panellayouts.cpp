// SPDX-License-Identifier: GPL-3.0-or-later
#include "site/panellayouts.h"

#include <QDataStream>
#include <QDialog>
#include <QHeaderView>
#include <QScreen>
#include <QTableView>
#include <QTreeView>

#include <algorithm>
#include <array>
#include <map>

namespace luma {

namespace {

constexpr auto keptPanels = std::to_array<QStringView>(
    {u"linkReportPanel", u"progressPanel", u"restorePanel", u"syncPanel", u"unlinkedItemsPanel"});
constexpr int mostTableColumns = 20;
constexpr int widestColumn = 4000;

// By the names of the panel and of what holds it: each pane has one.
std::map<QString, QDialog*> panelsOf(const QWidget& window)
{
    std::map<QString, QDialog*> panels;
    for (QDialog* panel : window.findChildren<QDialog*>()) {
        const QString name = panel->objectName();
        if (std::find(keptPanels.begin(), keptPanels.end(), name) != keptPanels.end())
            panels[panel->parent()->objectName() + u'/' + name] = panel;
    }
    return panels;
}

// Of the tables with columns that the user can size.
std::map<QString, QHeaderView*> headersOf(const QDialog& panel)
{
    std::map<QString, QHeaderView*> headers;
    for (const QTableView* table : panel.findChildren<QTableView*>())
        headers[table->objectName()] = table->horizontalHeader();
    for (const QTreeView* tree : panel.findChildren<QTreeView*>())
        headers[tree->objectName()] = tree->header();
    std::erase_if(headers, [](const auto& entry) {
        return entry.second->count() < 2 || entry.second->count() > mostTableColumns;
    });
    return headers;
}

void readColumns(QDataStream& stream, QHeaderView* header)
{
    quint8 count = 0;
    stream >> count;
    for (int column = 0; column < count && stream.status() == QDataStream::Ok; ++column) {
        qint32 width = 0;
        stream >> width;
        if (header && column < header->count() && width > 0 && stream.status() == QDataStream::Ok)
            header->resizeSection(column, std::clamp(width, header->minimumSectionSize(), widestColumn));
    }
}

} // namespace

void writePanelLayouts(QDataStream& stream, const QWidget& window)
{
    const auto panels = panelsOf(window);
    stream << static_cast<quint8>(panels.size());
    for (const auto& [name, panel] : panels) {
        const auto headers = headersOf(*panel);
        stream << name << panel->size() << static_cast<quint8>(headers.size());
        for (const auto& [view, header] : headers) {
            stream << view << static_cast<quint8>(header->count());
            for (int column = 0; column < header->count(); ++column)
                stream << static_cast<qint32>(header->sectionSize(column));
        }
    }
}

void readPanelLayouts(QDataStream& stream, const QWidget& window)
{
    const auto panels = panelsOf(window);
    quint8 count = 0;
    stream >> count;
    for (int i = 0; i < count && stream.status() == QDataStream::Ok; ++i) {
        QString name;
        QSize size;
        quint8 views = 0;
        stream >> name >> size >> views;
        const auto panel = panels.find(name);
        const bool isKnown = panel != panels.end() && stream.status() == QDataStream::Ok;
        if (isKnown)
            panel->second->ensurePolished(); // the style may change a dialog's first size
        if (isKnown && size.isValid())
            panel->second->resize(size.boundedTo(window.screen()->availableSize())
                                      .expandedTo(panel->second->minimumSizeHint()));
        const auto headers = isKnown ? headersOf(*panel->second) : std::map<QString, QHeaderView*>();
        for (int view = 0; view < views && stream.status() == QDataStream::Ok; ++view) {
            stream >> name;
            const auto header = headers.find(name);
            readColumns(stream, header == headers.end() ? nullptr : header->second);
        }
    }
}

} // namespace luma
