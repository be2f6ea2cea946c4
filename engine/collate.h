#pragma once

// String order is the default locale's collation (equality stays exact, code
// unit by code unit). One collator per thread.

#include <unicode/unistr.h>

namespace tarnfold::zmf {

// Below 0, 0 or above 0 as a sorts before, with or after b.
int collate(const icu::UnicodeString& a, const icu::UnicodeString& b);

}  // namespace tarnfold::zmf
