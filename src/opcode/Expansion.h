// SPDX-License-Identifier: Apache-2.0
// Exact sums and products of doubles as expansions: lists of non-overlapping components, smallest
// first, whose sum is the value. After J. R. Shewchuk, "Adaptive precision floating-point
// arithmetic and fast robust geometric predicates" (1997).
#pragma once

#include <array>

namespace kycb::opcode {

/// A value with a rounding error that was caught: `head + tail`, exactly.
struct HeadTail {
    double head;
    double tail;
};

inline HeadTail TwoSum(double a, double b) {
    const double sum = a + b;
    const double bVirtual = sum - a;
    const double aVirtual = sum - bVirtual;
    return {sum, (a - aVirtual) + (b - bVirtual)};
}

/// As TwoSum, for |a| >= |b|.
inline HeadTail FastTwoSum(double a, double b) {
    const double sum = a + b;
    return {sum, b - (sum - a)};
}

/// Splits into two halves of at most 26 bits, so that products of halves are exact.
inline HeadTail Split(double a) {
    constexpr double kSplitter = 134217729.0;  // 2^27 + 1
    const double c = kSplitter * a;
    const double high = c - (c - a);
    return {high, a - high};
}

inline HeadTail TwoProduct(double a, double b) {
    const double product = a * b;
    const HeadTail x = Split(a);
    const HeadTail y = Split(b);
    const double error = ((product - x.head * y.head) - x.tail * y.head) - x.head * y.tail;
    return {product, x.tail * y.tail - error};
}

/// An exact value of at most `Capacity` non-zero components. Zero components are dropped, so
/// values that need few bits stay short and cheap.
template <int Capacity>
class Expansion {
  public:
    int Size() const { return size_; }
    double operator[](int i) const { return parts_[static_cast<std::size_t>(i)]; }

    void Append(double part) {
        if (part != 0.0) parts_[static_cast<std::size_t>(size_++)] = part;
    }

    /// The value, rounded, with its exact sign: the largest component outweighs the rest, which
    /// rounding must not hide.
    double Estimate() const {
        if (size_ == 0) return 0.0;
        double sum = 0.0;
        for (int i = 0; i < size_; ++i)
            sum += (*this)[i];
        const double largest = (*this)[size_ - 1];
        return (sum > 0.0) == (largest > 0.0) && sum != 0.0 ? sum : largest;
    }

  private:
    // One spare place, so that an empty expansion needs no case of its own.
    std::array<double, Capacity + 1> parts_;
    int size_ = 0;
};

/// a - b.
inline Expansion<2> Difference(double a, double b) {
    const HeadTail d = TwoSum(a, -b);
    Expansion<2> result;
    result.Append(d.tail);
    result.Append(d.head);
    return result;
}

template <int M, int N>
Expansion<M + N> Sum(const Expansion<M>& a, const Expansion<N>& b) {
    Expansion<M + N> result;
    int i = 0;
    int j = 0;
    const auto next = [&] {
        const bool takeA = j == b.Size() ||
                           (i < a.Size() && (a[i] < 0 ? -a[i] : a[i]) < (b[j] < 0 ? -b[j] : b[j]));
        return takeA ? a[i++] : b[j++];
    };
    const int count = a.Size() + b.Size();
    if (count == 0) return result;
    double carry = next();
    for (int k = 1; k < count; ++k) {
        const HeadTail s = TwoSum(carry, next());
        result.Append(s.tail);
        carry = s.head;
    }
    result.Append(carry);
    return result;
}

template <int N>
Expansion<N> Negated(const Expansion<N>& a) {
    Expansion<N> result;
    for (int i = 0; i < a.Size(); ++i)
        result.Append(-a[i]);
    return result;
}

template <int N>
Expansion<2 * N> Scaled(const Expansion<N>& a, double factor) {
    Expansion<2 * N> result;
    if (a.Size() == 0) return result;
    HeadTail product = TwoProduct(a[0], factor);
    result.Append(product.tail);
    double carry = product.head;
    for (int i = 1; i < a.Size(); ++i) {
        product = TwoProduct(a[i], factor);
        const HeadTail low = TwoSum(carry, product.tail);
        result.Append(low.tail);
        const HeadTail high = FastTwoSum(product.head, low.head);
        result.Append(high.tail);
        carry = high.head;
    }
    result.Append(carry);
    return result;
}

/// a * b, for a `b` that is a difference of two floats: at most two components.
template <int N>
Expansion<4 * N> Product(const Expansion<N>& a, const Expansion<2>& b) {
    const Expansion<2 * N> low = Scaled(a, b.Size() > 0 ? b[0] : 0.0);
    const Expansion<2 * N> high = b.Size() > 1 ? Scaled(a, b[1]) : Expansion<2 * N>();
    return Sum(low, high);
}

}  // namespace kycb::opcode
