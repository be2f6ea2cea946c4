#include "engine/collate.h"

#include <memory>

#include <unicode/coll.h>

namespace tarnfold::zmf {

int collate(const icu::UnicodeString& a, const icu::UnicodeString& b) {
    thread_local std::unique_ptr<icu::Collator> collator = [] {
        UErrorCode status = U_ZERO_ERROR;
        std::unique_ptr<icu::Collator> made(icu::Collator::createInstance(icu::Locale::getDefault(), status));
        return U_SUCCESS(status) ? std::move(made) : nullptr;
    }();
    if (!collator) return a.compare(b);
    UErrorCode status = U_ZERO_ERROR;
    return collator->compare(a, b, status);
}

}  // namespace tarnfold::zmf
