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

// The bytes of the blocks kept on this thread's lists, for counts of what is
// live: they are the heap's, in use, but nobody's. Counted as the heap's
// chunks (a block and the heap's 8-byte header, in 16-byte steps, 32 at
// least), as a count of the heap's bytes in use has them.
inline thread_local std::size_t keptBlockBytes = 0;

template <size_t Size, uint32_t MaxKept = 4096>
class RecycledBlocks {
public:
    static constexpr uint32_t kMaxKept = MaxKept;
    static constexpr std::size_t kChunk = Size + 8 <= 32 ? 32 : (Size + 8 + 15) / 16 * 16;

    // A kept block, or null when there is none.
    static void* take() noexcept
    {
        Block* block = head_;
        if (block != nullptr) {
            head_ = block->next;
            --count_;
            keptBlockBytes -= kChunk;
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
        keptBlockBytes += kChunk;
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
            keptBlockBytes -= count_ * kChunk;
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

// Blocks of objects that are made and freed by the card-full (render nodes
// and what they keep, the members of objects read), recycled as containers'
// are: a list per size class up to kLargest bytes, any larger block going to
// the heap. Classes are 16 bytes apart up to 248 bytes, then 32 apart; a
// block of a class is 8 bytes short of a multiple of 16, what the heap's
// chunk of that multiple holds (its header takes 8), so rounding a size up
// to its class costs no memory. A list of small blocks keeps at most 512
// (the nodes of a 500-node card), one of larger blocks at most 8 KB of them:
// full lists keep about 1.5 MB on a thread.
namespace SizedBlockLists {

inline constexpr std::size_t kLargestSmall = 248;
inline constexpr std::size_t kLargest = 2040;
inline constexpr std::size_t kSmallClasses = (kLargestSmall + 8) / 16;                    // 16
inline constexpr std::size_t kClasses = kSmallClasses + (kLargest + 8) / 32 - (kLargestSmall + 8) / 32;  // 16 + 56

// The class of a size (0 for the smallest), and its blocks' size.
constexpr std::size_t classOf(std::size_t size)
{
    return size <= kLargestSmall ? (size + 8 + 15) / 16 - 1 : kSmallClasses + (size + 8 + 31) / 32 - 9;
}
constexpr std::size_t blockSize(std::size_t sizeClass)
{
    return sizeClass < kSmallClasses ? (sizeClass + 1) * 16 - 8 : (sizeClass - kSmallClasses + 9) * 32 - 8;
}
constexpr uint32_t keptOf(std::size_t sizeClass)
{
    return sizeClass < kSmallClasses ? 512 : static_cast<uint32_t>(8 * 1024 / blockSize(sizeClass));
}
static_assert(classOf(kLargestSmall) == kSmallClasses - 1 && classOf(kLargestSmall + 1) == kSmallClasses);
static_assert(classOf(kLargest) == kClasses - 1 && blockSize(kClasses - 1) == kLargest);
static_assert(blockSize(classOf(136)) == 136 && blockSize(classOf(137)) == 152 && blockSize(classOf(249)) == 280);

template <std::size_t... Classes>
constexpr auto takers(std::index_sequence<Classes...>)
{
    return std::array<void* (*)() noexcept, sizeof...(Classes)>{
        &RecycledBlocks<blockSize(Classes), keptOf(Classes)>::take...};
}

template <std::size_t... Classes>
constexpr auto keepers(std::index_sequence<Classes...>)
{
    return std::array<bool (*)(void*) noexcept, sizeof...(Classes)>{
        &RecycledBlocks<blockSize(Classes), keptOf(Classes)>::keep...};
}

inline constexpr auto kTakers = takers(std::make_index_sequence<kClasses>());
inline constexpr auto kKeepers = keepers(std::make_index_sequence<kClasses>());

}  // namespace SizedBlockLists

struct SizedBlocks {
    static void* allocate(std::size_t size)
    {
        using namespace SizedBlockLists;
        if (MERO_RECYCLE_BLOCKS && size <= kLargest) {
            const std::size_t sizeClass = classOf(size);
            if (void* block = kTakers[sizeClass]()) {
                return block;
            }
            return ::operator new(blockSize(sizeClass));
        }
        return ::operator new(size);
    }

    static void deallocate(void* block, std::size_t size) noexcept
    {
        using namespace SizedBlockLists;
        if (MERO_RECYCLE_BLOCKS && size <= kLargest && kKeepers[classOf(size)](block)) {
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
