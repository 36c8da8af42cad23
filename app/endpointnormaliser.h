// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace luma {

class ObservedDictionary;

/// Tidies an endpoint in place before its site opens: every string loses the blanks and tabs at both ends,
/// and the path then one slash at its end. Values of other types stay as they are.
void normaliseEndpoint(ObservedDictionary& endpoint);

} // namespace luma
