#include "render/PackedFields.h"

#include <utility>

#include "value/RecyclingAllocator.h"

namespace Mero {

namespace {

std::size_t valueBytes(uint32_t texts, uint32_t numbers)
{
    return countBits(texts) * sizeof(std::string) + countBits(numbers) * sizeof(float);
}

}  // namespace

void PackedFields::setText(unsigned field, std::string value)
{
    const uint32_t bit = 1U << field;
    if (block_ == nullptr || (block_->texts & bit) == 0) {
        add(bit, 0);
    }
    texts()[rank(block_->texts, field)] = std::move(value);
}

void PackedFields::setNumber(unsigned field, float value)
{
    const uint32_t bit = 1U << field;
    if (block_ == nullptr || (block_->numbers & bit) == 0) {
        add(0, bit);
    }
    numbers()[rank(block_->numbers, field)] = value;
}

void PackedFields::add(uint32_t textBit, uint32_t numberBit)
{
    // A block has less than 16 bytes to spare, so only a number may fit.
    if (block_ != nullptr && numberBit != 0 && valueBytes(block_->texts, block_->numbers | numberBit) <= block_->room) {
        insertNumber(numberBit);
    } else {
        moveToLargerBlock(textBit, numberBit);
    }
}

void PackedFields::addNumbers(uint32_t fields)
{
    const uint32_t missing = fields & ~(block_ != nullptr ? block_->numbers : 0U);
    if ((missing & (missing - 1)) == 0) {
        if (missing != 0) {
            add(0, missing);
        }
        return;
    }
    moveToLargerBlock(0, missing);
}

void PackedFields::insertNumber(uint32_t numberBit) noexcept
{
    const unsigned count = countBits(block_->numbers);
    const unsigned at = rank(block_->numbers, std::countr_zero(numberBit));
    float* values = numbers();
    // Fields are mostly set in field order: the new one goes last.
    for (unsigned i = count; i > at; --i) {
        values[i] = values[i - 1];
    }
    values[at] = 0.0F;
    block_->numbers |= numberBit;
}

void PackedFields::moveToLargerBlock(uint32_t newTexts, uint32_t newNumbers)
{
    const Header old = block_ != nullptr ? *block_ : Header{};
    const uint32_t grownTexts = old.texts | newTexts;
    const uint32_t grownNumbers = old.numbers | newNumbers;
    // The block fills the allocator's 16-byte step, so that the next fields
    // set often fit without moving again.
    const std::size_t total = (sizeof(Header) + valueBytes(grownTexts, grownNumbers) + 8 + 15) / 16 * 16 - 8;
    auto* made = static_cast<Header*>(SizedBlocks::allocate(total));
    // Nothing below throws: strings move without allocating.
    new (made) Header{grownNumbers, static_cast<uint8_t>(grownTexts), static_cast<uint8_t>(countBits(grownTexts)),
                      static_cast<uint16_t>(total - sizeof(Header))};
    auto* movedText = reinterpret_cast<std::string*>(made + 1);
    std::string* oldText = block_ != nullptr ? texts() : nullptr;
    for (uint32_t rest = grownTexts; rest != 0; rest &= rest - 1) {
        if ((rest & (~rest + 1) & newTexts) != 0) {
            new (movedText++) std::string();
        } else {
            new (movedText++) std::string(std::move(*oldText++));
        }
    }
    auto* movedNumber = reinterpret_cast<float*>(movedText);
    const float* oldNumber = block_ != nullptr ? numbers() : nullptr;
    for (uint32_t rest = grownNumbers; rest != 0; rest &= rest - 1) {
        new (movedNumber++) float((rest & (~rest + 1) & newNumbers) != 0 ? 0.0F : *oldNumber++);
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
    for (unsigned i = block->textCount; i > 0; --i) {
        (text++)->~basic_string();
    }
    SizedBlocks::deallocate(block, sizeof(Header) + block->room);
}

}  // namespace Mero
