#include "discovery/launchpad_tree.h"

#include "model/layout_document.h"
#include "platform/texts.h"

#include <QHash>
#include <QSet>

#include <algorithm>
#include <tuple>
#include <vector>

namespace tessellar {

using namespace Qt::Literals::StringLiterals;

namespace {

using Item = NativeLaunchpadItem;
using Kind = ImportedNode::Kind;

class TreeBuilder {
public:
    explicit TreeBuilder(const LaunchpadRows& rows) {
        for (const NativeLaunchpadGroup& group : rows.groups)
            _titles.insert(group.item_id, group.title);
        for (const Item& item : rows.items) {
            if (item.type == Item::rootType && item.uuid == u"ROOTPAGE"_s &&
                (!_root || item.rowid < _root->rowid))
                _root = &item;
            if (item.parent_id && *item.parent_id != item.rowid)
                _children[*item.parent_id].push_back(&item);
        }
        for (auto& siblings : _children)
            std::ranges::stable_sort(
                siblings, {}, [](const Item* item) { return std::tuple(item->ordering, item->rowid); });
    }

    QList<ImportedNode> build() {
        if (!_root)
            return {};
        _met.insert(_root->rowid);
        return pagesOf(_root->rowid, 0);
    }

private:
    using Siblings = std::vector<const Item*>;

    QList<ImportedNode> pagesOf(std::int64_t container, int depth) {
        struct Level {
            const Siblings* items;
            std::size_t next = 0;
            bool isPage = false;
        };
        QList<ImportedNode> pages;
        bool pageIsOpen = false;
        const auto add = [&](ImportedNode tile) {
            if (!std::exchange(pageIsOpen, true))
                pages.append(ImportedNode{.kind = Kind::page});
            pages.last().children.append(std::move(tile));
        };
        std::vector<Level> levels{{childrenOf(container)}};
        while (!levels.empty()) {
            Level& level = levels.back();
            if (level.next == level.items->size()) {
                if (level.isPage)
                    pageIsOpen = false;
                levels.pop_back();
                continue;
            }
            const Item& item = *(*level.items)[level.next++];
            if (_met.contains(item.rowid))
                continue;
            _met.insert(item.rowid);
            if (item.type == Item::appType) {
                add({.kind = Kind::app, .item = item.rowid});
            } else if (item.type == Item::pageType && !item.uuid.startsWith(u"HOLDINGPAGE"_s)) {
                pages.append(ImportedNode{.kind = Kind::page, .item = item.rowid});
                pageIsOpen = true;
                levels.push_back({childrenOf(item.rowid), 0, true});
            } else if (item.type == Item::folderType && depth == maximumFolderDepth) {
                levels.push_back({childrenOf(item.rowid)});
            } else if (item.type == Item::folderType) {
                const QString title = _titles.value(item.rowid).trimmed();
                add({.kind = Kind::folder,
                     .item = item.rowid,
                     .title = title.isEmpty() ? Texts::tr("Folder") : title,
                     .children = pagesOf(item.rowid, depth + 1)});
            }
        }
        return pages;
    }

    const Siblings* childrenOf(std::int64_t item) const {
        static const Siblings none;
        const auto found = _children.constFind(item);
        return found == _children.cend() ? &none : &*found;
    }

    const Item* _root = nullptr;
    QHash<std::int64_t, Siblings> _children;
    QHash<std::int64_t, QString> _titles;
    QSet<std::int64_t> _met;
};

} // namespace

QList<ImportedNode> launchpadTree(const LaunchpadRows& rows) { return TreeBuilder(rows).build(); }

} // namespace tessellar
