// SPDX-License-Identifier: GPL-3.0-or-later
#include "page/originmatching.h"

#include "html/pagesource.h"
#include "page/markupdifference.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <unordered_map>
#include <unordered_set>

namespace luma {

namespace {

using html::Node;
using OldNodes = std::span<Node* const>;
using NewNodes = std::span<Node* const>;

std::vector<Node*> childrenOf(Node& node)
{
    std::vector<Node*> children;
    if (const html::ParentNode* const parent = node.asParent()) {
        for (Node* child = parent->firstChild(); child; child = child->next())
            children.push_back(child);
    }
    return children;
}

bool isSameKind(const Node& a, const Node& b)
{
    const html::Element* const one = a.asElement();
    const html::Element* const other = b.asElement();
    if (one && other)
        return one->tagName() == other->tagName() && one->nameSpace() == other->nameSpace();
    return a.kind() == b.kind();
}

/// Pairs of indices, old and new, both rising: as many as can be.
using Pairs = std::vector<std::pair<std::size_t, std::size_t>>;

Pairs longestRisingRun(const Pairs& pairs)
{
    std::vector<std::size_t> tails; // by the length of the run that ends there
    std::vector<std::size_t> before(pairs.size(), pairs.size());
    for (std::size_t i = 0; i < pairs.size(); ++i) {
        const auto place =
            std::lower_bound(tails.begin(), tails.end(), pairs[i].first,
                             [&pairs](std::size_t tail, std::size_t old) { return pairs[tail].first < old; });
        before[i] = place == tails.begin() ? pairs.size() : *std::prev(place);
        if (place == tails.end())
            tails.push_back(i);
        else
            *place = i;
    }
    Pairs run;
    for (std::size_t i = tails.empty() ? pairs.size() : tails.back(); i < pairs.size(); i = before[i])
        run.push_back(pairs[i]);
    std::reverse(run.begin(), run.end());
    return run;
}

class OriginMatcher final
{
public:
    OriginMatcher(std::vector<Node*> oldRoots, std::vector<Node*> newRoots)
        : m_oldRoots(std::move(oldRoots)), m_newRoots(std::move(newRoots))
    {
        for (Node* const root : m_oldRoots)
            hashAll(*root);
        for (Node* const root : m_newRoots)
            hashAll(*root);
    }

    void run()
    {
        m_waiting.emplace_back(m_oldRoots, m_newRoots);
        while (!m_waiting.empty()) {
            const auto [olds, news] = std::move(m_waiting.back());
            m_waiting.pop_back();
            matchBetweenAnchors(olds, news);
        }
        matchTheRest();
    }

private:
    // Children first, so that a subtree's hash knows theirs.
    void hashAll(Node& root)
    {
        std::vector<Node*> nodes;
        for (Node* node = &root; node; node = node->following(root))
            nodes.push_back(node);
        for (std::size_t i = nodes.size(); i-- > 0;) {
            std::uint64_t hash = html::PageSource::contentHash(*nodes[i]);
            const html::ParentNode* const parent = nodes[i]->asParent();
            for (const Node* child = parent ? parent->firstChild() : nullptr; child; child = child->next())
                hash = (hash ^ m_hashes[child]) * 0x100000001B3U + 1;
            m_hashes[nodes[i]] = hash;
        }
    }

    [[nodiscard]] bool areEqual(const Node* a, const Node* b) const
    {
        return m_hashes.at(a) == m_hashes.at(b);
    }

    void adopt(const Node& old, Node& added)
    {
        m_used.insert(&old);
        m_settled.insert(&added);
        if (!added.origin().source)
            added.setOrigin(old.origin());
    }

    void adoptAll(const Node& old, Node& added)
    {
        const Node* from = &old;
        for (Node* to = &added; to && from; to = to->following(added), from = from->following(old))
            adopt(*from, *to);
    }

    void matchEnds(OldNodes& olds, NewNodes& news)
    {
        while (!olds.empty() && !news.empty() && areEqual(olds.front(), news.front())) {
            adoptAll(*olds.front(), *news.front());
            olds = olds.subspan(1);
            news = news.subspan(1);
        }
        while (!olds.empty() && !news.empty() && areEqual(olds.back(), news.back())) {
            adoptAll(*olds.back(), *news.back());
            olds = olds.first(olds.size() - 1);
            news = news.first(news.size() - 1);
        }
    }

    /// What stands once on both sides, in one order.
    [[nodiscard]] Pairs anchorsOf(OldNodes olds, NewNodes news) const
    {
        struct Places
        {
            std::size_t olds = 0;
            std::size_t news = 0;
            std::size_t old = 0;
        };
        std::unordered_map<std::uint64_t, Places> places;
        for (std::size_t i = 0; i < olds.size(); ++i) {
            Places& found = places[m_hashes.at(olds[i])];
            ++found.olds;
            found.old = i;
        }
        for (const Node* node : news)
            ++places[m_hashes.at(node)].news;
        Pairs pairs;
        for (std::size_t i = 0; i < news.size(); ++i) {
            const Places& found = places[m_hashes.at(news[i])];
            if (found.olds == 1 && found.news == 1)
                pairs.emplace_back(found.old, i);
        }
        return longestRisingRun(pairs);
    }

    void matchBetweenAnchors(OldNodes olds, NewNodes news)
    {
        matchEnds(olds, news);
        std::size_t old = 0;
        std::size_t added = 0;
        for (const auto& [anchor, other] : anchorsOf(olds, news)) {
            adoptAll(*olds[anchor], *news[other]);
            matchGap(olds.subspan(old, anchor - old), news.subspan(added, other - added));
            old = anchor + 1;
            added = other + 1;
        }
        matchGap(olds.subspan(old), news.subspan(added));
    }

    // One after the other; an equal one is looked for only near by, for a gap may be long.
    void matchGap(OldNodes olds, NewNodes news)
    {
        constexpr std::size_t nearby = 64;
        matchEnds(olds, news);
        for (Node* const added : news) {
            const OldNodes near = olds.first(std::min(olds.size(), nearby));
            auto found =
                std::find_if(near.begin(), near.end(), [&](const Node* old) { return areEqual(old, added); });
            if (found != near.end()) {
                adoptAll(**found, *added);
            } else {
                found = std::find_if(near.begin(), near.end(),
                                     [&](const Node* old) { return isSameKind(*old, *added); });
                if (found == near.end())
                    continue;
                adopt(**found, *added);
                if (added->asParent())
                    m_waiting.emplace_back(childrenOf(**found), childrenOf(*added));
            }
            olds = olds.subspan(static_cast<std::size_t>(found - near.begin()) + 1);
        }
    }

    // What was wrapped, unwrapped or moved to another parent.
    void matchTheRest()
    {
        std::unordered_multimap<std::uint64_t, const Node*> rest;
        for (Node* const root : m_oldRoots) {
            for (const Node* node = root; node; node = node->following(*root)) {
                if (!m_used.contains(node))
                    rest.emplace(m_hashes.at(node), node);
            }
        }
        for (Node* const root : m_newRoots) {
            for (Node* node = root; node; node = node->following(*root)) {
                if (m_settled.contains(node))
                    continue;
                const auto found = rest.find(m_hashes.at(node));
                if (found == rest.end())
                    continue;
                if (!m_used.contains(found->second))
                    adoptAll(*found->second, *node);
                rest.erase(found);
            }
        }
    }

    std::vector<Node*> m_oldRoots;
    std::vector<Node*> m_newRoots;
    std::vector<std::pair<std::vector<Node*>, std::vector<Node*>>> m_waiting;
    std::unordered_map<const Node*, std::uint64_t> m_hashes; // of subtrees
    std::unordered_set<const Node*> m_used;                  // old ones
    std::unordered_set<const Node*> m_settled;               // new ones
};

} // namespace

void adoptOrigins(MarkupDifference& difference)
{
    if (!difference.parent || difference.nodes.empty())
        return;
    std::vector<Node*> olds;
    Node* const first = difference.previous ? difference.previous->next() : difference.parent->firstChild();
    for (Node* node = first; node != difference.next; node = node->next())
        olds.push_back(node);
    std::vector<Node*> news;
    for (const html::NodePtr& node : difference.nodes)
        news.push_back(node.get());
    OriginMatcher(std::move(olds), std::move(news)).run();
}

} // namespace luma
