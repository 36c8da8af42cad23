// SPDX-License-Identifier: GPL-3.0-or-later
#include "browser/filesystemmodel.h"

#include "base/mainhop.h"
#include "base/workitem.h"
#include "browser/displaytext.h"
#include "browser/dragrecord.h"
#include "browser/folderdifference.h"

#include <QMimeData>
#include <QPointer>
#include <QThreadPool>

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <utility>

namespace luma {

namespace {

using Nodes = std::vector<FileSystemNodePointer>;

/// With more changes than this it is faster to replace all rows of the folder.
constexpr std::size_t maximumRanges = 500;

/// A listing that takes longer comes late.
constexpr std::chrono::milliseconds moment(100);

bool standsBefore(const FileSystemNode& a, const FileSystemNode& b)
{
    const int order = collationKey(a.name()).compare(collationKey(b.name()));
    return order != 0 ? order < 0 : a.name() < b.name();
}

} // namespace

/// A listing in the background, shared by both threads.
class FileSystemModel::Listing final
{
public:
    void finish(std::optional<Nodes> nodes)
    {
        const std::lock_guard lock(m_mutex);
        m_nodes = std::move(nodes);
        m_wasQuick = std::chrono::steady_clock::now() - m_begin < moment;
        m_isDone = true;
        m_done.notify_all();
    }
    bool waitFor(std::chrono::milliseconds time)
    {
        std::unique_lock lock(m_mutex);
        return m_done.wait_for(lock, time, [this] { return m_isDone; });
    }
    // Of a finished one:
    std::optional<Nodes> take() { return std::exchange(m_nodes, std::nullopt); }
    [[nodiscard]] bool wasQuick() const { return m_wasQuick; }

private:
    const std::chrono::steady_clock::time_point m_begin = std::chrono::steady_clock::now();
    std::mutex m_mutex;
    std::condition_variable m_done;
    std::optional<Nodes> m_nodes;
    bool m_isDone = false;
    bool m_wasQuick = false;
};

/// A folder whose rows have been used. An index points to the record of the folder that contains its row.
struct FileSystemModel::Folder
{
    FileSystemNodePointer node;
    Folder* parent = nullptr;
    int row = 0;
    Nodes rows;
    SideMarks marks;
    bool stale = false;
    std::shared_ptr<Listing> listing; // while it runs
    bool listsAgain = false;          // the folder has changed since that began
    std::vector<std::unique_ptr<Folder>> opened;

    void shiftOpened(int from, int by)
    {
        for (const auto& folder : opened) {
            if (folder->row >= from)
                folder->row += by;
        }
    }
};

FileSystemModel::FileSystemModel(QObject* parent) : QAbstractItemModel(parent) {}

FileSystemModel::~FileSystemModel() = default;

void FileSystemModel::setRootNode(FileSystemNodePointer root)
{
    beginResetModel();
    m_root.reset();
    m_rootNode = std::move(root);
    m_isSlow = false;
    endResetModel();
}

const FileSystemNodePointer& FileSystemModel::rootNode() const
{
    return m_rootNode;
}

void FileSystemModel::reload()
{
    beginResetModel();
    m_root.reset();
    if (m_rootNode)
        m_rootNode->childrenDirty = true;
    endResetModel();
}

FileSystemNodePointer FileSystemModel::node(const QModelIndex& index) const
{
    if (!index.isValid())
        return m_rootNode;
    return static_cast<Folder*>(index.internalPointer())->rows[static_cast<std::size_t>(index.row())];
}

/// The record of the folder at `index`; creates and lists it on first use. Null for a leaf.
FileSystemModel::Folder* FileSystemModel::folderAt(const QModelIndex& index) const
{
    auto* self = const_cast<FileSystemModel*>(this);
    if (!index.isValid()) {
        if (!m_root && m_rootNode) {
            self->m_root = std::make_unique<Folder>();
            m_root->node = m_rootNode;
            if (self->list(*m_root))
                m_root->rows = listed(*m_rootNode);
        }
        return m_root.get();
    }
    auto* parent = static_cast<Folder*>(index.internalPointer());
    for (const auto& folder : parent->opened) {
        if (folder->row == index.row())
            return folder.get();
    }
    const FileSystemNodePointer& item = parent->rows[static_cast<std::size_t>(index.row())];
    if (item->isLeaf())
        return nullptr;
    parent->opened.push_back(std::make_unique<Folder>());
    Folder* opened = parent->opened.back().get();
    opened->node = item;
    opened->parent = parent;
    opened->row = index.row();
    if (self->list(*opened))
        opened->rows = listed(*item);
    return opened;
}

/// Brings the children of the folder's node up to date. False if they come later.
bool FileSystemModel::list(Folder& folder)
{
    if (!m_lister || !folder.node->childrenDirty)
        return true;
    if (folder.listing) {
        folder.listsAgain = true;
        return false;
    }
    folder.listsAgain = false;
    folder.listing = std::make_shared<Listing>();
    // One thread more for its time: neither does it wait for other jobs, nor do they for a server.
    QThreadPool::globalInstance()->releaseThread();
    start(std::make_shared<WorkItem>(),
          [self = QPointer(this), listing = folder.listing, lister = m_lister,
           url = folder.node->url().native(), hidden = m_showsHidden](const WorkItem&) {
              listing->finish(lister(url, hidden));
              QThreadPool::globalInstance()->reserveThread();
              onMain(self, [&listing](FileSystemModel& model) { model.takeLate(listing); });
          });
    return takeInTime(folder);
}

/// After one listing that came late, none is waited for until one is quick again.
bool FileSystemModel::takeInTime(Folder& folder)
{
    if (!folder.listing->waitFor(m_isSlow ? std::chrono::milliseconds(0) : moment)) {
        m_isSlow = true;
        return false;
    }
    folder.node->setChildren(std::exchange(folder.listing, nullptr)->take());
    return true;
}

void FileSystemModel::takeLate(const std::shared_ptr<Listing>& listing)
{
    Folder* const folder = m_root ? findListing(*m_root, listing) : nullptr;
    // Taken in time, or the folder is gone.
    if (!folder)
        return;
    m_isSlow = !listing->wasQuick();
    folder->listing.reset();
    folder->node->setChildren(listing->take());
    showChildren(*folder);
    const QPersistentModelIndex index = indexOf(*folder);
    if (folder->listsAgain)
        refreshFolder(*folder);
    emit listedLate(index);
}

FileSystemModel::Folder* FileSystemModel::findListing(Folder& folder, const std::shared_ptr<Listing>& listing)
{
    if (folder.listing == listing)
        return &folder;
    for (const auto& opened : folder.opened) {
        if (Folder* const found = findListing(*opened, listing))
            return found;
    }
    return nullptr;
}

bool FileSystemModel::isBeingListed(const QModelIndex& folder) const
{
    const Folder* const record = folderAt(folder);
    return record && record->listing;
}

/// The children of a node, of which packages that were opened are folders.
const std::vector<FileSystemNodePointer>& FileSystemModel::listed(FileSystemNode& folder) const
{
    folder.showsHidden = m_showsHidden;
    const Nodes& nodes = folder.children();
    for (const FileSystemNodePointer& node : nodes) {
        if (node->isPackage() && m_openedPackages.contains(node->url().native()))
            node->openPackage();
    }
    return nodes;
}

bool FileSystemModel::openPackage(const QModelIndex& index)
{
    const FileSystemNodePointer item = node(index);
    if (!index.isValid() || !item->isPackage())
        return false;
    m_openedPackages.insert(item->url().native());
    item->openPackage();
    emit dataChanged(index, index);
    return true;
}

QModelIndex FileSystemModel::indexOf(const Folder& folder) const
{
    return folder.parent ? createIndex(folder.row, 0, folder.parent) : QModelIndex();
}

QModelIndex FileSystemModel::childNamed(const QModelIndex& folder, const std::string& name) const
{
    Folder* record = folderAt(folder);
    if (!record)
        return {};
    const auto found =
        std::find_if(record->rows.begin(), record->rows.end(),
                     [&](const FileSystemNodePointer& child) { return child->name() == name; });
    return found == record->rows.end()
               ? QModelIndex()
               : createIndex(static_cast<int>(found - record->rows.begin()), 0, record);
}

SideMark FileSystemModel::markOf(const QModelIndex& index, const std::string& name)
{
    const SideMarks& marks = static_cast<Folder*>(index.internalPointer())->marks;
    const auto found = marks.find(name);
    return found == marks.end() ? SideMark::None : found->second;
}

void FileSystemModel::setMarks(const QModelIndex& folder, SideMarks marks)
{
    Folder* const record = folderAt(folder);
    if (!record || record->marks == marks)
        return;
    record->marks = std::move(marks);
    if (!record->rows.empty())
        emit dataChanged(createIndex(0, 0, record),
                         createIndex(static_cast<int>(record->rows.size()) - 1, 0, record), {MarkRole});
}

void FileSystemModel::refresh(const QModelIndexList& shown)
{
    if (!m_root)
        return;
    QList<QPersistentModelIndex> wanted(shown.begin(), shown.end());
    // A skipped folder keeps its rows until it is shown; all folders above a shown one are shown too.
    const auto markStale = [](auto&& self, Folder& folder) -> void {
        folder.stale = true;
        for (const auto& opened : folder.opened)
            self(self, *opened);
    };
    markStale(markStale, *m_root);
    refreshFolder(*m_root);
    for (const QPersistentModelIndex& folder : wanted) {
        if (folder.isValid())
            bringUpToDate(folder);
    }
}

void FileSystemModel::bringUpToDate(const QModelIndex& folder)
{
    if (Folder* record = folderAt(folder); record && record->stale)
        refreshFolder(*record);
}

void FileSystemModel::refreshFolder(Folder& folder)
{
    folder.stale = false;
    folder.node->childrenDirty = true;
    if (list(folder))
        showChildren(folder);
}

/// The rows become those of the folder's node.
void FileSystemModel::showChildren(Folder& folder)
{
    const Nodes& nodes = listed(*folder.node);
    const FolderDifference difference = folderDifference(folder.rows, nodes);
    if (difference.removed.size() + difference.inserted.size() > maximumRanges) {
        replaceAll(folder, nodes);
        return;
    }
    for (const RowRange& range : difference.removed)
        removeRange(folder, range.first, range.last);
    for (const RowRange& range : difference.inserted)
        insertRange(folder, range.first, Nodes(nodes.begin() + range.first, nodes.begin() + range.last + 1));
    adoptNodes(folder, nodes);
}

void FileSystemModel::removeRange(Folder& folder, int first, int last)
{
    beginRemoveRows(indexOf(folder), first, last);
    folder.rows.erase(folder.rows.begin() + first, folder.rows.begin() + last + 1);
    std::erase_if(folder.opened,
                  [&](const auto& opened) { return opened->row >= first && opened->row <= last; });
    folder.shiftOpened(last + 1, first - last - 1);
    endRemoveRows();
}

void FileSystemModel::insertRange(Folder& folder, int first, Nodes nodes)
{
    const int count = static_cast<int>(nodes.size());
    beginInsertRows(indexOf(folder), first, first + count - 1);
    folder.shiftOpened(first, count);
    folder.rows.insert(folder.rows.begin() + first, std::make_move_iterator(nodes.begin()),
                       std::make_move_iterator(nodes.end()));
    endInsertRows();
}

void FileSystemModel::replaceAll(Folder& folder, const Nodes& nodes)
{
    if (!folder.rows.empty())
        removeRange(folder, 0, static_cast<int>(folder.rows.size()) - 1);
    if (!nodes.empty())
        insertRange(folder, 0, nodes);
}

/// The rows already match the listing; replaces the old nodes by the new ones.
void FileSystemModel::adoptNodes(Folder& folder, const Nodes& nodes)
{
    int firstChanged = -1;
    int lastChanged = -1;
    for (std::size_t i = 0; i < nodes.size(); ++i) {
        if (folder.rows[i]->labelColor() != nodes[i]->labelColor()) {
            firstChanged = firstChanged < 0 ? static_cast<int>(i) : firstChanged;
            lastChanged = static_cast<int>(i);
        }
    }
    folder.rows = nodes;
    for (const auto& opened : folder.opened) {
        opened->node = nodes[static_cast<std::size_t>(opened->row)];
        opened->stale = true;
    }
    if (firstChanged >= 0)
        emit dataChanged(createIndex(firstChanged, 0, &folder), createIndex(lastChanged, 0, &folder));
}

QModelIndex FileSystemModel::index(int row, int column, const QModelIndex& parent) const
{
    if (row < 0 || column != 0 || parent.column() > 0)
        return {};
    Folder* folder = folderAt(parent);
    return folder && row < static_cast<int>(folder->rows.size()) ? createIndex(row, 0, folder)
                                                                 : QModelIndex();
}

QModelIndex FileSystemModel::parent(const QModelIndex& index) const
{
    return index.isValid() ? indexOf(*static_cast<Folder*>(index.internalPointer())) : QModelIndex();
}

int FileSystemModel::rowCount(const QModelIndex& parent) const
{
    const Folder* folder = parent.column() > 0 ? nullptr : folderAt(parent);
    return folder ? static_cast<int>(folder->rows.size()) : 0;
}

int FileSystemModel::columnCount(const QModelIndex& /*parent*/) const
{
    return 1;
}

bool FileSystemModel::hasChildren(const QModelIndex& parent) const
{
    return rowCount(parent) > 0;
}

QVariant FileSystemModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid())
        return {};
    const FileSystemNodePointer item = node(index);
    switch (role) {
    case Qt::DisplayRole:
        return item->displayName();
    case Qt::EditRole:
        return item->editedName();
    case LabelColorRole:
        return static_cast<int>(item->labelColor());
    case LeafRole:
        return item->isLeaf();
    case MarkRole:
        return static_cast<int>(markOf(index, item->name()));
    case Qt::AccessibleDescriptionRole:
        return textOf(markOf(index, item->name()));
    case PathRole:
        return QByteArray::fromStdString(item->url().native());
    default:
        return {};
    }
}

bool FileSystemModel::setData(const QModelIndex& index, const QVariant& value, int role)
{
    if (!index.isValid() || role != Qt::EditRole)
        return false;
    const FileSystemNodePointer item = node(index);
    // The text may not contain all of the name's bytes, so an unchanged text must not rename.
    if (value.toString() == item->editedName())
        return false;
    const std::filesystem::path oldPath = item->url();
    const auto newPath = item->pathNamed(value.toString());
    if (newPath && m_renamer) {
        m_renamer(oldPath, *newPath);
        return true;
    }
    Result<void> done;
    if (!newPath)
        done = newPath.error();
    else if (m_prepareRename)
        done = m_prepareRename(oldPath, *newPath);
    if (done)
        done = item->setDisplayName(value.toString());
    if (!done) {
        emit renameFailed(displayText(done.error().text));
        return false;
    }
    emit dataChanged(index, index);
    moveToSortedPlace(*static_cast<Folder*>(index.internalPointer()), index.row());
    emit renamed(oldPath, item->url());
    return true;
}

void FileSystemModel::moveToSortedPlace(Folder& folder, int row)
{
    Nodes others = folder.rows;
    const FileSystemNodePointer item = others[static_cast<std::size_t>(row)];
    others.erase(others.begin() + row);
    const auto place = std::lower_bound(
        others.begin(), others.end(), item,
        [](const FileSystemNodePointer& a, const FileSystemNodePointer& b) { return standsBefore(*a, *b); });
    const int target = static_cast<int>(place - others.begin());
    others.insert(place, item);
    const auto renamedFolder = std::find_if(folder.opened.begin(), folder.opened.end(),
                                            [&](const auto& opened) { return opened->row == row; });
    Folder* opened = renamedFolder == folder.opened.end() ? nullptr : renamedFolder->get();
    if (target != row) {
        const QModelIndex parentIndex = indexOf(folder);
        beginMoveRows(parentIndex, row, row, parentIndex, target > row ? target + 1 : target);
        folder.rows = std::move(others);
        folder.shiftOpened(row + 1, -1);
        if (opened)
            opened->row = -1;
        folder.shiftOpened(target, 1);
        if (opened)
            opened->row = target;
        endMoveRows();
    }
    // Everything below it has a new path.
    if (opened)
        refreshFolder(*opened);
}

Qt::ItemFlags FileSystemModel::flags(const QModelIndex& index) const
{
    if (!index.isValid())
        return Qt::NoItemFlags;
    return Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsEditable | Qt::ItemIsDragEnabled;
}

QStringList FileSystemModel::mimeTypes() const
{
    return {QLatin1String(dragRecordType), QStringLiteral("text/uri-list")};
}

QMimeData* FileSystemModel::mimeData(const QModelIndexList& indexes) const
{
    QModelIndexList inRowOrder = indexes;
    std::sort(inRowOrder.begin(), inRowOrder.end());
    std::vector<std::filesystem::path> paths;
    for (const QModelIndex& index : inRowOrder)
        paths.push_back(node(index)->url());
    if (paths.empty())
        return nullptr;
    auto* record = new QMimeData;
    record->setData(QLatin1String(dragRecordType), dragRecord(paths));
    record->setData(QStringLiteral("text/uri-list"), uriList(paths));
    return record;
}

Qt::DropActions FileSystemModel::supportedDragActions() const
{
    return Qt::CopyAction | Qt::MoveAction | Qt::LinkAction;
}

} // namespace luma
