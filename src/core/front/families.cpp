// The family table itself. It is at the top of the house because it names every family.
#include <span>

#include "core/product.h"

namespace tavlyn {
namespace {

constexpr const Product* kRows[] = {
#define PRODUCT(name, kind, vid, pid) &k##name##Product,
#include "core/products.inc"
#undef PRODUCT
};

}  // namespace

constexpr std::span<const Product* const> kProducts = kRows;

}  // namespace tavlyn
