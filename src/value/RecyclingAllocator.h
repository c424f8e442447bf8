// RecyclingAllocator: the allocator of the shared blocks that hold an array's
// or an object's container; and SizedBlocks, the same recycling by size
// class for what a card makes per node (render nodes, their kept values).
//
// Reading a data set makes and later frees thousands of containers of the
// same few sizes; the general-purpose heap is slow at exactly that pattern.
// Freed blocks are kept on a per-thread list, one per block size, and handed
// to the next container of that size. A list holds at most kMaxKept blocks,
// more than the containers of a 500-node template (about 1,900 objects) or
// of a card's data set, so the next card of a large template takes all its
// blocks from the lists; at 1,024 the rest went to the general heap and cost
// that card 3% more. Full lists keep about 1 MB on a thread (objects' blocks
// are 200 bytes, arrays' 40). Past that, and for anything but single
// blocks, the heap is used as usual. Sanitizer builds recycle nothing, so
// that a use after free is still caught.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <new>
#include <utility>

namespace Mero {

template <size_t Size, uint32_t MaxKept = 4096>
class RecycledBlocks {
public:
    static constexpr uint32_t kMaxKept = MaxKept;

    // A kept block, or null when there is none.
    static void* take() noexcept
    {
        Block* block = head_;
        if (block != nullptr) {
            head_ = block->next;
            --count_;
        }
        return block;
    }

    // Keeps `block`; false when it is not kept and goes back to the heap.
    static bool keep(void* block) noexcept
    {
        if (count_ >= kMaxKept || closed_) {
            return false;
        }
        (void)&drain_;  // the first use on a thread arranges its drain at thread exit
        head_ = new (block) Block{head_};
        ++count_;
        return true;
    }

private:
    struct Block {
        Block* next;
    };
    // Frees the kept blocks when the thread ends; later frees go to the heap.
    struct Drain {
        ~Drain()
        {
            closed_ = true;
            while (head_ != nullptr) {
                Block* block = head_;
                head_ = block->next;
                ::operator delete(block);
            }
            count_ = 0;
        }
    };

    static inline thread_local Block* head_ = nullptr;
    static inline thread_local uint32_t count_ = 0;
    static inline thread_local bool closed_ = false;
    static inline thread_local Drain drain_;
};

#if defined(__SANITIZE_ADDRESS__)
#define MERO_RECYCLE_BLOCKS 0
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define MERO_RECYCLE_BLOCKS 0
#endif
#endif
#ifndef MERO_RECYCLE_BLOCKS
#define MERO_RECYCLE_BLOCKS 1
#endif

template <typename T>
class RecyclingAllocator {
public:
    using value_type = T;
    static_assert(alignof(T) <= __STDCPP_DEFAULT_NEW_ALIGNMENT__);

    RecyclingAllocator() noexcept = default;
    template <typename U>
    RecyclingAllocator(const RecyclingAllocator<U>&) noexcept
    {}

    T* allocate(size_t count)
    {
        if (MERO_RECYCLE_BLOCKS && count == 1) {
            if (void* block = RecycledBlocks<sizeof(T)>::take()) {
                return static_cast<T*>(block);
            }
        }
        return static_cast<T*>(::operator new(count * sizeof(T)));
    }

    void deallocate(T* block, size_t count) noexcept
    {
        if (MERO_RECYCLE_BLOCKS && count == 1 && RecycledBlocks<sizeof(T)>::keep(block)) {
            return;
        }
        ::operator delete(block);
    }

    template <typename U>
    bool operator==(const RecyclingAllocator<U>&) const noexcept
    {
        return true;
    }
};

// Blocks of objects that are made and freed by the card-full, as render
// nodes are, recycled as containers' are: a list per size class up to
// kLargest bytes, any larger block going to the heap. Classes are 16 bytes
// apart and a block of class k is 16k - 8 bytes, what the heap's chunk of
// 16k bytes holds (its header takes 8): rounding a size up to its class
// costs no memory. A list keeps at most kKeptPerClass blocks, enough for
// the nodes of a 500-node card; full lists keep 1 MB on a thread.
namespace SizedBlockLists {

inline constexpr std::size_t kLargest = 248;
inline constexpr uint32_t kKeptPerClass = 512;

constexpr std::size_t classOf(std::size_t size)
{
    return (size + 8 + 15) / 16;
}

constexpr std::size_t blockSize(std::size_t sizeClass)
{
    return sizeClass * 16 - 8;
}

template <std::size_t... Classes>
constexpr auto takers(std::index_sequence<Classes...>)
{
    return std::array<void* (*)() noexcept, sizeof...(Classes)>{&RecycledBlocks<blockSize(Classes + 1), kKeptPerClass>::take...};
}

template <std::size_t... Classes>
constexpr auto keepers(std::index_sequence<Classes...>)
{
    return std::array<bool (*)(void*) noexcept, sizeof...(Classes)>{&RecycledBlocks<blockSize(Classes + 1), kKeptPerClass>::keep...};
}

// Indexed by class - 1.
inline constexpr auto kTakers = takers(std::make_index_sequence<classOf(kLargest)>());
inline constexpr auto kKeepers = keepers(std::make_index_sequence<classOf(kLargest)>());

}  // namespace SizedBlockLists

struct SizedBlocks {
    static void* allocate(std::size_t size)
    {
        using namespace SizedBlockLists;
        if (MERO_RECYCLE_BLOCKS && size <= kLargest) {
            if (void* block = kTakers[classOf(size) - 1]()) {
                return block;
            }
            return ::operator new(blockSize(classOf(size)));
        }
        return ::operator new(size);
    }

    static void deallocate(void* block, std::size_t size) noexcept
    {
        using namespace SizedBlockLists;
        if (MERO_RECYCLE_BLOCKS && size <= kLargest && kKeepers[classOf(size) - 1](block)) {
            return;
        }
        ::operator delete(block);
    }
};

// A standard allocator over SizedBlocks, for a small container that lives
// and goes with a card's node (its children, say).
template <typename T>
struct SizedAllocator {
    using value_type = T;

    SizedAllocator() noexcept = default;
    template <typename U>
    SizedAllocator(const SizedAllocator<U>&) noexcept
    {}

    T* allocate(std::size_t count) { return static_cast<T*>(SizedBlocks::allocate(count * sizeof(T))); }
    void deallocate(T* block, std::size_t count) noexcept { SizedBlocks::deallocate(block, count * sizeof(T)); }

    template <typename U>
    bool operator==(const SizedAllocator<U>&) const noexcept
    {
        return true;
    }
};

}  // namespace Mero
