// RecyclingAllocator: the allocator of the shared blocks that hold an array's
// or an object's container.
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

#include <cstddef>
#include <cstdint>
#include <new>

namespace Mero {

template <size_t Size>
class RecycledBlocks {
public:
    static constexpr uint32_t kMaxKept = 4096;

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

}  // namespace Mero
