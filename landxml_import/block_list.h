// A list that only grows at its end and is read once from its start, in
// blocks of fixed size: no element is ever moved or copied while it grows,
// and memory is taken a block at a time. The scan stores millions of surface
// numbers in these; a vector would copy them and touch twice their memory
// while doubling.
#pragma once
#include <cstddef>
#include <memory>
#include <vector>

template <class T>
class CBlockList {
public:
    // A multiple of 3 and of 4: a run of 1, 3 or 4 values never straddles
    // two blocks.
    static constexpr size_t kBlock = 12 * 4096;

    // Room for n (1, 3 or 4) values at the end; the caller fills them.
    T* Append(size_t n) {
        if (blocks_.empty() || fill_ + n > kBlock) {
            blocks_.push_back(std::make_unique_for_overwrite<T[]>(kBlock));
            fill_ = 0;
        }
        T* at = blocks_.back().get() + fill_;
        fill_ += n;
        size_ += n;
        return at;
    }
    void PushBack(const T& v) { *Append(1) = v; }
    size_t Size() const { return size_; }
    bool Empty() const { return size_ == 0; }
    void Clear() {
        blocks_.clear();
        fill_ = size_ = 0;
    }

    // Reads the list from its start, n values at a time (the same n the
    // values were appended with).
    class CReader {
    public:
        explicit CReader(const CBlockList& list) : list_(list) {}
        const T* Next(size_t n) {
            if (at_ + n > kBlock) {
                ++block_;
                at_ = 0;
            }
            const T* p = list_.blocks_[block_].get() + at_;
            at_ += n;
            return p;
        }

    private:
        const CBlockList& list_;
        size_t block_ = 0;
        size_t at_ = 0;
    };

private:
    std::vector<std::unique_ptr<T[]>> blocks_;
    size_t fill_ = 0;
    size_t size_ = 0;
};
