// PackedFields: a few values out of many fields, in one block with room for
// only the fields that are set.
//
// A render node keeps its style values (two colours, fourteen numbers) and
// the insets Yoga laid out (eight numbers) only where they differ from their
// defaults. Most nodes set none and hold no block; most of the others set one
// colour, or four corners, or four paddings. Room for every field took 176
// bytes in two blocks; one colour takes a block of 48, four corners one of 32.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace Mero {

class PackedFields {
public:
    // Fields are numbered from 0 within each type.
    static constexpr unsigned kTextFields = 32;
    static constexpr unsigned kNumberFields = 32;

    PackedFields() noexcept = default;
    PackedFields(const PackedFields&) = delete;
    PackedFields& operator=(const PackedFields&) = delete;
    ~PackedFields();

    // The value set for `field`; null when it has none.
    const std::string* text(unsigned field) const noexcept;
    const float* number(unsigned field) const noexcept;
    // Sets `field`. A field that had no value moves the others to a block
    // with room for it (strong guarantee: on failure nothing changed).
    void setText(unsigned field, std::string value);
    void setNumber(unsigned field, float value);

private:
    // The block starts with which fields it holds; the texts follow, then
    // the numbers, each in field order.
    struct alignas(std::string) Header {
        uint32_t texts = 0;
        uint32_t numbers = 0;
    };
    std::string* texts() const noexcept;
    float* numbers() const noexcept;
    // Makes room for a field not yet set, leaving its value default-made.
    void add(uint32_t textBit, uint32_t numberBit);
    static void release(Header* block) noexcept;

    Header* block_ = nullptr;
};

}  // namespace Mero
