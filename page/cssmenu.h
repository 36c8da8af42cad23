// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>

namespace luma::html {
class Document;
class Element;
} // namespace luma::html

namespace luma {

/// The titles of the style sheet menu: the linked sheets by their address as written, then the page's own
/// `style` blocks as "<style> [0]", "<style> [1]" ..., each in document order.
QStringList cssMenuTitles(const html::Document& document);

/// Whether a title stands for a `style` block of the page (else for a linked file).
bool isStyleBlock(const QString& title);

/// The `style` block that a title stands for; null when its number is missing, no number, or beyond the last.
html::Element* styleBlock(const html::Document& document, const QString& title);

} // namespace luma
