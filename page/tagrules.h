// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "html/node.h"

#include <QMap>
#include <QString>
#include <QStringList>
#include <QVariant>

namespace luma {

/// Which tags may be put where, and what may be done to an element: the fixed tables of the page editor and
/// the questions asked of them. Owns nothing; an element may be null, which allows nothing.
class TagRules final
{
public:
    const QStringList unmoveableTags;
    const QStringList headTags;
    const QStringList bodyTags;
    const QStringList sectionTags;
    const QStringList articleTags;
    const QStringList navTags;
    const QStringList ulTags;
    /// By a parent's tag: the tags that may be inserted into it.
    const QMap<QString, QStringList> tagDict;

    TagRules();

    /// The question by its name: "itemArrayForMenu" answers a list of tags, "canEnable", "canDelete",
    /// "canAddClass", "canRemoveClass", "canAddID" and "canRemoveID" a bool. No element, no such question, or
    /// a tag without a list: an invalid QVariant, which reads as false.
    QVariant itemArrayForMenu(const QString& key, const html::Element* element) const;

    /// The tags offered for insertion; the title is never among them, it has its own sheet.
    QStringList insertableTags(const html::Element* element) const;
    bool canEnable(const html::Element* element) const;
    bool canDelete(const html::Node* node) const;
    bool canAddClass(const html::Element* element) const;
    bool canRemoveClass(const html::Element* element) const;
    bool canAddID(const html::Element* element) const;
    bool canRemoveID(const html::Element* element) const;
    bool canDrag(const html::Element* element) const;
    /// Whether a node may be moved: elements that can be dragged, comments, and texts but those that are all an
    /// element is for, such as a script.
    bool canMove(const html::Node* node) const;
    /// Whether `dragged` may become a child of `target`.
    bool canDrop(const html::Element* dragged, const html::Element* target) const;
    /// Where a node lands that is dropped at `childIndex` among these children of `target`: before that child,
    /// behind the last one, or, dropped onto the target itself (-1), at its beginning. `moved` is the node that moves
    /// there, null for a copy; the position stays valid once it is detached.
    static html::Position dropPosition(html::Element& target, const std::vector<html::Node*>& children,
                                       int childIndex, const html::Node* moved);

    /// The inner markup that a new element of the tag starts with; a null QString for a tag that can't be
    /// inserted (inserting it changes nothing).
    QString innerMarkup(const QString& tagName) const;
    /// A detached new element with its inner markup; null for a tag that can't be inserted.
    html::NodePtr newElement(const QString& tagName) const;
};

/// The tag name of an element as the screen's text.
QString tagNameOf(const html::Element& element);

} // namespace luma
