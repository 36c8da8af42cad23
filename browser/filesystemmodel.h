// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/result.h"
#include "browser/filesystemnode.h"
#include "browser/sidemark.h"

#include <QAbstractItemModel>

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace luma {

/// The tree of FileSystemNode as a model of one column for a Browser. Folders are listed on first use, at once or in the
/// background.
/// refresh() lists again and reports exactly which rows came and went, so that selection, scroll position and
/// open columns stay; it replaces the nodes, but indexes of remaining items stay valid. Renames go through
/// setData() with Qt::EditRole. Main thread only.
class FileSystemModel final : public QAbstractItemModel
{
    Q_OBJECT

public:
    enum Role {
        LabelColorRole = Qt::UserRole + 1, ///< int, a LabelColor
        LeafRole,                          ///< bool
        PathRole,                          ///< QByteArray, the full path
        MarkRole,                          ///< int, a SideMark
    };

    explicit FileSystemModel(QObject* parent = nullptr);
    ~FileSystemModel() override;

    /// Lists a folder on any thread, as listFolder().
    using Lister = std::function<std::optional<std::vector<FileSystemNodePointer>>(const std::string& url,
                                                                                   bool showsHidden)>;
    /// Lets `lister` list in the background, so that a slow server holds nothing up: a folder whose listing takes
    /// longer than a moment stays as it was, a new one empty, until listedLate(). Without one, and at first, folders are
    /// listed at once. Counts from the next root on.
    void setBackgroundLister(Lister lister) { m_lister = std::move(lister); }
    /// Its listing has not come yet.
    [[nodiscard]] bool isBeingListed(const QModelIndex& folder) const;

    /// Sets the root, whose children fill the first column; null empties the model.
    void setRootNode(FileSystemNodePointer root);
    [[nodiscard]] const FileSystemNodePointer& rootNode() const;

    /// The node at `index`, or the root for an invalid index; null without a root.
    [[nodiscard]] FileSystemNodePointer node(const QModelIndex& index) const;
    /// The row of the item called `name` (bytes) in `folder`, or an invalid index.
    [[nodiscard]] QModelIndex childNamed(const QModelIndex& folder, const std::string& name) const;

    /// `prepare` is called before an item gets another path, and its error keeps it from that.
    using RenamePreparation = std::function<Result<void>(const std::filesystem::path& oldPath,
                                                         const std::filesystem::path& newPath)>;
    void setRenamePreparation(RenamePreparation prepare) { m_prepareRename = std::move(prepare); }

    /// With `rename`, the model leaves renaming to it, so that a slow server holds nothing up: the row keeps its name until
    /// its folder is listed again. Without, it renames at once.
    using Renamer =
        std::function<void(const std::filesystem::path& oldPath, const std::filesystem::path& newPath)>;
    void setBackgroundRenamer(Renamer rename) { m_renamer = std::move(rename); }

    /// Whether hidden items are listed. Counts from the next listing on.
    void setShowsHidden(bool shows) { m_showsHidden = shows; }

    /// Discards all listings and indexes and lists the root again.
    void reload();
    /// Lists the root and the folders in `shown` again; other folders only when bringUpToDate() is called.
    void refresh(const QModelIndexList& shown);
    /// Lists a folder again if a refresh() has skipped it. Call before showing it.
    void bringUpToDate(const QModelIndex& folder);
    /// How the items of a listed folder differ from the other side; stays until it is set again.
    void setMarks(const QModelIndex& folder, SideMarks marks);
    /// Makes a package a folder from now on; false for any other item.
    bool openPackage(const QModelIndex& index);

    [[nodiscard]] QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
    [[nodiscard]] QModelIndex parent(const QModelIndex& index) const override;
    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] bool hasChildren(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;
    [[nodiscard]] Qt::ItemFlags flags(const QModelIndex& index) const override;
    [[nodiscard]] QStringList mimeTypes() const override;
    [[nodiscard]] QMimeData* mimeData(const QModelIndexList& indexes) const override;
    [[nodiscard]] Qt::DropActions supportedDragActions() const override;

signals:
    /// An item has been renamed on disk.
    void renamed(const std::filesystem::path& oldPath, const std::filesystem::path& newPath);
    void renameFailed(const QString& reason);
    /// The rows of a folder have come, or could not be read.
    void listedLate(const QModelIndex& folder);

private:
    struct Folder;
    class Listing;

    std::unique_ptr<Folder> m_root;
    FileSystemNodePointer m_rootNode;
    std::set<std::string> m_openedPackages; // by path
    RenamePreparation m_prepareRename;
    Renamer m_renamer;
    bool m_showsHidden = false;
    Lister m_lister;
    bool m_isSlow = false; // the last listing took longer than a moment

    bool list(Folder& folder);
    bool takeInTime(Folder& folder);
    void takeLate(const std::shared_ptr<Listing>& listing);
    void showChildren(Folder& folder);
    [[nodiscard]] static Folder* findListing(Folder& folder, const std::shared_ptr<Listing>& listing);
    [[nodiscard]] const std::vector<FileSystemNodePointer>& listed(FileSystemNode& folder) const;
    [[nodiscard]] static SideMark markOf(const QModelIndex& index, const std::string& name);
    [[nodiscard]] Folder* folderAt(const QModelIndex& index) const;
    [[nodiscard]] QModelIndex indexOf(const Folder& folder) const;
    void refreshFolder(Folder& folder);
    void removeRange(Folder& folder, int first, int last);
    void insertRange(Folder& folder, int first, std::vector<FileSystemNodePointer> nodes);
    void replaceAll(Folder& folder, const std::vector<FileSystemNodePointer>& nodes);
    void adoptNodes(Folder& folder, const std::vector<FileSystemNodePointer>& nodes);
    void moveToSortedPlace(Folder& folder, int row);
};

} // namespace luma
