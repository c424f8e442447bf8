#include "render/PackedFields.h"

#include <bit>
#include <new>
#include <utility>

namespace Mero {

namespace {

// How many of the fields before `field` are set.
unsigned rank(uint32_t mask, unsigned field)
{
    return static_cast<unsigned>(std::popcount(mask & ((uint32_t{1} << field) - 1)));
}

std::size_t blockSize(uint32_t texts, uint32_t numbers, std::size_t header)
{
    return header + std::popcount(texts) * sizeof(std::string) + std::popcount(numbers) * sizeof(float);
}

}  // namespace

PackedFields::~PackedFields()
{
    release(block_);
}

std::string* PackedFields::texts() const noexcept
{
    return std::launder(reinterpret_cast<std::string*>(block_ + 1));
}

float* PackedFields::numbers() const noexcept
{
    auto* afterTexts = reinterpret_cast<std::byte*>(block_ + 1) + std::popcount(block_->texts) * sizeof(std::string);
    return std::launder(reinterpret_cast<float*>(afterTexts));
}

const std::string* PackedFields::text(unsigned field) const noexcept
{
    if (block_ == nullptr || (block_->texts & (uint32_t{1} << field)) == 0) {
        return nullptr;
    }
    return texts() + rank(block_->texts, field);
}

const float* PackedFields::number(unsigned field) const noexcept
{
    if (block_ == nullptr || (block_->numbers & (uint32_t{1} << field)) == 0) {
        return nullptr;
    }
    return numbers() + rank(block_->numbers, field);
}

void PackedFields::setText(unsigned field, std::string value)
{
    const uint32_t bit = uint32_t{1} << field;
    if (block_ == nullptr || (block_->texts & bit) == 0) {
        add(bit, 0);
    }
    texts()[rank(block_->texts, field)] = std::move(value);
}

void PackedFields::setNumber(unsigned field, float value)
{
    const uint32_t bit = uint32_t{1} << field;
    if (block_ == nullptr || (block_->numbers & bit) == 0) {
        add(0, bit);
    }
    numbers()[rank(block_->numbers, field)] = value;
}

void PackedFields::add(uint32_t textBit, uint32_t numberBit)
{
    const Header old = block_ != nullptr ? *block_ : Header{};
    const Header grown{old.texts | textBit, old.numbers | numberBit};
    auto* made = static_cast<Header*>(::operator new(blockSize(grown.texts, grown.numbers, sizeof(Header))));
    // Nothing below throws: strings move without allocating.
    new (made) Header(grown);
    auto* movedTexts = reinterpret_cast<std::string*>(made + 1);
    unsigned from = 0;
    for (uint32_t rest = grown.texts; rest != 0; rest &= rest - 1) {
        const uint32_t bit = rest & (~rest + 1);
        if (bit == textBit) {
            new (movedTexts++) std::string();
        } else {
            new (movedTexts++) std::string(std::move(texts()[from++]));
        }
    }
    auto* movedNumbers = reinterpret_cast<float*>(movedTexts);
    from = 0;
    for (uint32_t rest = grown.numbers; rest != 0; rest &= rest - 1) {
        const uint32_t bit = rest & (~rest + 1);
        new (movedNumbers++) float(bit == numberBit ? 0.0F : numbers()[from++]);
    }
    release(block_);
    block_ = made;
}

void PackedFields::release(Header* block) noexcept
{
    if (block == nullptr) {
        return;
    }
    auto* text = std::launder(reinterpret_cast<std::string*>(block + 1));
    for (int i = std::popcount(block->texts); i > 0; --i) {
        (text++)->~basic_string();
    }
    ::operator delete(block);
}

}  // namespace Mero
