// Expansion of label texts such as "KM1~KM5", "KM1,2,3" or "1D~9D" into single labels.
#pragma once

#include "shared/fileops/FileOps.h"

#include <string>

// A range standing alone in a text and a range inside a comma list follow
// the same steps with deliberate differences (see ExpandRangeParts).
enum class ERangeForm { Single, List };

// A range, or a whole expansion, that would give more labels than this is
// taken as malformed and gives nothing: no drawing text names so many devices,
// and a typing slip such as "1~99999999" must not stall the editor.
inline constexpr long long kMaxExpandedLabels = 10000;

// Expands one label text; a malformed range gives an empty list.
void ExpandLabel(const std::wstring& label, CStringArray& outLabels);

// One range "a~b" in list form; anything but two non-empty ends gives nothing.
void ExpandLabelRange(const std::wstring& range, CStringArray& outLabels);

// The range rules over the two ends a and b in either form.
void ExpandRangeParts(const std::wstring& a, const std::wstring& b, ERangeForm form,
                      CStringArray& outLabels);
