// PackedFields: a few values out of many fields, in one block with room for
// only the fields that are set.
//
// A render node keeps its style values (two colours, fourteen numbers) and
// the insets Yoga laid out (eight numbers) only where they differ from their
// defaults. Most nodes set none and hold no block; most of the others set one
// colour, or four corners, or four paddings. Room for every field took 176
// bytes in two blocks; one colour takes a block of 48, four corners one of 32.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <new>
#include <string>

#include "value/BitCount.h"

namespace Mero {

class PackedFields {
public:
    // Fields are numbered from 0 within each type.
    static constexpr unsigned kTextFields = 8;
    static constexpr unsigned kNumberFields = 32;

    PackedFields() noexcept = default;
    PackedFields(const PackedFields&) = delete;
    PackedFields& operator=(const PackedFields&) = delete;
    ~PackedFields() { release(block_); }

    // Whether no field is set.
    bool empty() const noexcept { return block_ == nullptr; }
    // The value set for `field`; null when it has none.
    const std::string* text(unsigned field) const noexcept
    {
        if (block_ == nullptr || (block_->texts & (1U << field)) == 0) {
            return nullptr;
        }
        return texts() + rank(block_->texts, field);
    }
    const float* number(unsigned field) const noexcept
    {
        if (block_ == nullptr || (block_->numbers & (1U << field)) == 0) {
            return nullptr;
        }
        return numbers() + rank(block_->numbers, field);
    }
    // Sets `field`. A field that had no value makes room for it: a number
    // in the block when it has room left, else in a larger block (strong
    // guarantee: on failure nothing changed).
    void setText(unsigned field, std::string value);
    void setNumber(unsigned field, float value);
    // Makes room at once for the numbers of `fields` (one bit per field) not
    // yet set, which then read 0: for several numbers set together.
    void addNumbers(uint32_t fields);

    // Calls visit(field, value) for every field set, in field order.
    template <typename Visit>
    void forEachText(Visit visit) const
    {
        const std::string* value = block_ != nullptr ? texts() : nullptr;
        for (uint32_t rest = block_ != nullptr ? block_->texts : 0; rest != 0; rest &= rest - 1) {
            visit(static_cast<unsigned>(std::countr_zero(rest)), *value++);
        }
    }
    template <typename Visit>
    void forEachNumber(Visit visit) const
    {
        const float* value = block_ != nullptr ? numbers() : nullptr;
        for (uint32_t rest = block_ != nullptr ? block_->numbers : 0; rest != 0; rest &= rest - 1) {
            visit(static_cast<unsigned>(std::countr_zero(rest)), *value++);
        }
    }

private:
    // The block starts with which fields it holds and how many bytes of
    // values it has room for; the texts follow, then the numbers, each in
    // field order.
    struct alignas(std::string) Header {
        uint32_t numbers = 0;
        uint8_t texts = 0;
        uint8_t textCount = 0;
        uint16_t room = 0;
    };
    // How many of the fields before `field` are set.
    static unsigned rank(uint32_t mask, unsigned field) noexcept
    {
        return countBits(mask & ((1U << field) - 1));
    }
    std::string* texts() const noexcept { return std::launder(reinterpret_cast<std::string*>(block_ + 1)); }
    float* numbers() const noexcept
    {
        auto* afterTexts = reinterpret_cast<std::byte*>(block_ + 1) + block_->textCount * sizeof(std::string);
        return std::launder(reinterpret_cast<float*>(afterTexts));
    }
    // Makes room for a field not yet set, its value default-made.
    void add(uint32_t textBit, uint32_t numberBit);
    void insertNumber(uint32_t numberBit) noexcept;
    // Moves the values to a block with room for the fields of both masks
    // too, which have no value yet.
    void moveToLargerBlock(uint32_t newTexts, uint32_t newNumbers);
    static void release(Header* block) noexcept;

    Header* block_ = nullptr;
};

}  // namespace Mero
