#include "model/remembered_places.h"

#include <QHash>

#include <algorithm>
#include <deque>
#include <memory>
#include <vector>

namespace tessellar {

namespace {

/// The arrangement as a tree, for finding, inserting and moving tiles.
class Weaver {
public:
    Weaver(const RememberedPlaces& places, Instant oldest)
        : _closedFolders(places.closedFolders.begin(), places.closedFolders.end()) {
        for (const RememberedPlace& place : places.places)
            if (place.goneAt >= oldest)
                _places.insert(place.id, place);
    }

    WovenPages weave(const Pages& pages, const RememberedPlaces& places) {
        fill(_root, pages);
        weaveInto(_root, places.pages);
        return {pagesOf(_root), std::move(_absent)};
    }

private:
    struct Contents;
    struct Node {
        LaunchpadItem item; ///< folders without their pages
        std::unique_ptr<Contents> contents;
        Contents* parent = nullptr;
    };
    struct Contents {
        std::vector<std::vector<Node*>> pages;
    };
    struct Position {
        std::size_t page;
        std::ptrdiff_t index;
    };

    Node* add(LaunchpadItem item) {
        Node& node = _nodes.emplace_back();
        if (FolderEntry* folder = item.folder()) {
            node.contents = std::make_unique<Contents>();
            folder->pages.clear();
        }
        node.item = std::move(item);
        return &node;
    }

    void fill(Contents& contents, const Pages& pages) {
        for (const Page& page : pages) {
            auto& nodes = contents.pages.emplace_back();
            for (const LaunchpadItem& item : page) {
                Node* node = add(item);
                node->parent = &contents;
                nodes.push_back(node);
                if (!_live.contains(item.id()))
                    _live.insert(item.id(), node);
                if (const FolderEntry* folder = item.folder())
                    fill(*node->contents, folder->pages);
            }
        }
    }

    static Pages pagesOf(const Contents& contents) {
        Pages pages;
        for (const auto& nodes : contents.pages) {
            Page page;
            page.reserve(static_cast<qsizetype>(nodes.size()));
            for (Node* node : nodes) {
                if (FolderEntry* folder = node->item.folder())
                    folder->pages = pagesOf(*node->contents);
                page.append(std::move(node->item));
            }
            pages.append(std::move(page));
        }
        return pages;
    }

    Node* live(const QUuid& id) const { return _live.value(id); }
    /// The tile if it is directly in `target`, otherwise null.
    Node* liveIn(const Contents& target, const QUuid& id) const {
        Node* node = live(id);
        return node && node->parent == &target ? node : nullptr;
    }

    static Position positionOf(const Node* node) {
        const auto& pages = node->parent->pages;
        for (std::size_t page = 0;; ++page)
            if (const auto found = std::ranges::find(pages[page], node); found != pages[page].end())
                return {page, found - pages[page].begin()};
    }
    static void insert(Contents& target, Node* node, Position at) {
        auto& page = target.pages[at.page];
        page.insert(page.begin() + at.index, node);
        node->parent = &target;
    }
    static void take(Node* node) {
        const Position at = positionOf(node);
        auto& page = node->parent->pages[at.page];
        page.erase(page.begin() + at.index);
        node->parent = nullptr;
    }

    /// The tile of a remembered item, in `target` or yet to be inserted; null if it is elsewhere or
    /// gone.
    Node* nodeFor(const LaunchpadItem& item, Contents& target) {
        if (const FolderEntry* folder = item.folder()) {
            Node* node = live(folder->id);
            if (!node)
                return remade(*folder, target);
            if (node->contents)
                weaveInto(*node->contents, folder->pages);
            return liveIn(target, folder->id);
        }
        const AppEntry* app = item.app();
        const auto place = _places.constFind(item.id());
        if (!app || live(item.id()) || place == _places.constEnd())
            return liveIn(target, item.id());
        Node* node = add(*app);
        _live.insert(app->id, node);
        _absent.insert(app->id, *place);
        return node;
    }

    /// The tiles of a closed folder that are in the arrangement; tiles of closed folders in it count as
    /// its own.
    int liveCount(const FolderEntry& folder) const {
        int count = 0;
        for (const Page& page : folder.pages)
            for (const LaunchpadItem& item : page) {
                const FolderEntry* inner = item.folder();
                count += live(item.id()) ? 1 : inner ? liveCount(*inner) : 0;
            }
        return count;
    }
    /// False if several of its tiles are back: then the user has undone the folder itself.
    bool isClosed(const FolderEntry& folder) const {
        return _closedFolders.contains(folder.id) && liveCount(folder) < 2;
    }

    /// The items of a page; folders that the user dissolved are replaced by their items.
    void collect(const Page& page, Page& items) const {
        for (const LaunchpadItem& item : page) {
            const FolderEntry* folder = item.folder();
            if (!folder || live(folder->id) || isClosed(*folder))
                items.append(item);
            else
                for (const Page& inner : folder->pages)
                    collect(inner, items);
        }
    }

    /// Recreates a closed folder. If its last tile is still in the folder's place, it goes back into
    /// the folder.
    Node* remade(const FolderEntry& folder, Contents& target) {
        Node* node = add(folder);
        for (const Page& page : folder.pages) {
            Page items;
            collect(page, items);
            std::vector<Node*> inner;
            for (const LaunchpadItem& item : std::as_const(items)) {
                Node* member = nodeFor(item, target);
                if (!member)
                    continue;
                if (member->parent) {
                    if (!node->parent)
                        insert(target, node, positionOf(member));
                    take(member);
                }
                member->parent = node->contents.get();
                inner.push_back(member);
            }
            if (!inner.empty())
                node->contents->pages.push_back(std::move(inner));
        }
        if (node->contents->pages.empty())
            return nullptr;
        _live.insert(folder.id, node);
        return node;
    }

    void weaveInto(Contents& target, const Pages& remembered) {
        std::vector<std::vector<Node*>> pages;
        for (const Page& page : remembered) {
            Page items;
            collect(page, items);
            auto& nodes = pages.emplace_back();
            for (const LaunchpadItem& item : std::as_const(items))
                if (Node* node = nodeFor(item, target))
                    nodes.push_back(node);
        }
        // A damaged file may name a tile twice; by now it is in a folder.
        for (auto& page : pages)
            std::erase_if(page,
                          [&](const Node* node) { return node->parent && node->parent != &target; });
        const auto isIn = [&](const Node* node) { return node->parent == &target; };
        const Node* last = nullptr; ///< of the pages so far
        for (auto page = pages.begin(); page != pages.end(); ++page) {
            for (auto node = page->begin(); node != page->end(); ++node) {
                if (isIn(*node))
                    continue;
                const auto next = std::find_if(node, page->end(), isIn);
                if (node != page->begin()) {
                    const Position before = positionOf(*std::prev(node));
                    insert(target, *node, {before.page, before.index + 1});
                } else if (next != page->end()) {
                    insert(target, *node, positionOf(*next));
                } else {
                    const std::size_t at = newPage(target, last, page + 1, pages.end(), isIn);
                    insert(target, *node, {at, 0});
                }
            }
            if (!page->empty())
                last = page->back();
        }
    }

    /// Inserts an empty page after that of `last`, or before that of later tiles.
    template <typename Iterator, typename IsIn>
    static std::size_t newPage(Contents& target, const Node* last, Iterator later, Iterator end,
                               IsIn isIn) {
        std::size_t at = target.pages.size();
        if (last) {
            at = positionOf(last).page + 1;
        } else {
            for (; later != end; ++later)
                if (const auto next = std::ranges::find_if(*later, isIn); next != later->end()) {
                    at = positionOf(*next).page;
                    break;
                }
        }
        target.pages.insert(target.pages.begin() + static_cast<std::ptrdiff_t>(at),
                            std::vector<Node*>());
        return at;
    }

    QHash<QUuid, RememberedPlace> _places;
    QSet<QUuid> _closedFolders;
    std::deque<Node> _nodes;
    Contents _root;
    QHash<QUuid, Node*> _live;
    QHash<QUuid, RememberedPlace> _absent;
};

Pages without(const Pages& pages, const QSet<QUuid>& ids) {
    Pages result;
    for (const Page& page : pages) {
        Page kept;
        for (const LaunchpadItem& item : page) {
            if (ids.contains(item.id()) && item.app())
                continue;
            kept.append(item);
            if (FolderEntry* folder = kept.last().folder())
                folder->pages = without(folder->pages, ids);
        }
        result.append(kept);
    }
    return result;
}

void summarize(const Pages& pages, int rootPage, const QStringList& folders,
               const QHash<QUuid, RememberedPlace>& places, QList<PlaceSummary>& result) {
    const bool isRoot = rootPage < 0;
    for (qsizetype page = 0; page < pages.size(); ++page) {
        const int at = isRoot ? static_cast<int>(page) : rootPage;
        for (const LaunchpadItem& item : pages[page]) {
            if (const FolderEntry* folder = item.folder())
                summarize(folder->pages, at, folders + QStringList(folder->name), places, result);
            const auto place = places.constFind(item.id());
            if (const AppEntry* app = item.app(); app && place != places.constEnd())
                result.append({*app, place->goneAt, place->isRemoved, at, folders});
        }
    }
}

} // namespace

WovenPages weave(const Pages& pages, const RememberedPlaces& places, Instant oldest) {
    if (places.places.isEmpty())
        return {pages, {}};
    return Weaver(places, oldest).weave(pages, places);
}

void RememberedPlaces::forget(const std::function<bool(const AppEntry&)>& isForgotten) {
    QSet<QUuid> forgotten;
    forEachItem(pages, [&](const LaunchpadItem& item) {
        if (const AppEntry* app = item.app(); app && isForgotten(*app))
            forgotten.insert(app->id);
        return true;
    });
    const auto isOne = [&](const auto& remembered) { return forgotten.contains(remembered.id); };
    places.removeIf(isOne);
    homes.removeIf(isOne);
    if (isEmpty())
        *this = {};
    else
        pages = without(pages, forgotten);
}

void RememberedPlaces::setRemoved(const QString& path, bool isRemoved) {
    QSet<QUuid> ids;
    forEachItem(pages, [&](const LaunchpadItem& item) {
        if (const AppEntry* app = item.app(); app && app->path == path)
            ids.insert(app->id);
        return true;
    });
    for (RememberedPlace& place : places)
        if (ids.contains(place.id))
            place.isRemoved = isRemoved;
}

QList<PlaceSummary> summaries(const RememberedPlaces& places) {
    QHash<QUuid, RememberedPlace> byId;
    for (const RememberedPlace& place : places.places)
        byId.insert(place.id, place);
    QList<PlaceSummary> result;
    summarize(places.pages, -1, {}, byId, result);
    return result;
}

} // namespace tessellar
