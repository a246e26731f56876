#include "tests/unit/shared/symboltable/allocationCount.hpp"

#include <cstdlib>
#include <new>

namespace {

long live = 0;

}  // namespace

long liveObjects() {
    return live;
}

void* operator new(std::size_t size) {
    void* place = std::malloc(size == 0 ? 1 : size);
    if (place == nullptr) {
        throw std::bad_alloc{};
    }
    ++live;
    return place;
}

void operator delete(void* place) noexcept {
    live -= place != nullptr ? 1 : 0;
    std::free(place);
}

void operator delete(void* place, std::size_t /*size*/) noexcept {
    operator delete(place);
}
