// SPDX-License-Identifier: MIT
// After Hertel and Mehlhorn, "Fast triangulation of simple polygons". The line rises. Where it is
// inside the polygon, it is cut by the sides into intervals. Each has a chain of corners below the
// line, from its left side to its right one, above which nothing is triangulated yet. A corner that
// the line reaches cuts off of the chain what it can see of it.
#include "devhost/scene/PolygonSweep.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <list>
#include <set>

namespace devhost {

namespace {

class Sweep {
  public:
    explicit Sweep(std::span<const PlanePoint> corners)
        : corners_(corners), open_(Leftmost{this}), before_(corners.size()),
          behind_(corners.size()), leftSideTo_(corners.size()), rightSideTo_(corners.size()) {}

    std::vector<std::array<unsigned, 3>> run() {
        std::vector<unsigned> order = withoutSpikes();
        std::sort(order.begin(), order.end(), [this](auto a, auto b) { return isBelow(a, b); });
        for (unsigned corner : order)
            if (!pass(corner))
                return {};
        return isWhole() ? triangles_ : std::vector<std::array<unsigned, 3>>();
    }

  private:
    using Chain = std::list<unsigned>;
    struct Interval {
        unsigned left, leftUp, right,
            rightUp; // the two sides, each from its lower end to its upper
        Chain chain;
        Chain::iterator latest; // what any corner that comes into the interval can see
    };
    /// Orders intervals, and corners among them. What is open changes, but never its order.
    struct Leftmost {
        // NOLINTNEXTLINE(readability-identifier-naming): sets look for this name
        using is_transparent = void;
        const Sweep *self;
        bool operator()(const Interval *a, const Interval *b) const {
            if (a == b)
                return false;
            if (self->isBelow(b->left, a->left))
                return self->isLeftOf(a->left, a->leftUp, b);
            return !self->isLeftOf(b->left, b->leftUp, a);
        }
        bool operator()(unsigned corner, const Interval *b) const {
            return self->isLeftOf(corner, corner, b);
        }
        bool operator()(const Interval *a, unsigned corner) const {
            return !self->isLeftOf(corner, corner, a);
        }
    };
    using Open = std::set<Interval *, Leftmost>;

    /// The corners but for those where the polygon turns back on itself or stands still, which give
    /// triangles without area; and who is whose neighbour.
    std::vector<unsigned> withoutSpikes() {
        std::vector<unsigned> kept;
        size_t first = 0;
        const auto isSpike = [this](unsigned a, unsigned b, unsigned c) {
            const PlanePoint &p = corners_[a], &q = corners_[b], &r = corners_[c];
            return turn(p, q, r) == 0 && (p.x - q.x) * (r.x - q.x) + (p.y - q.y) * (r.y - q.y) >= 0;
        };
        const auto dropLast = [&](unsigned next) {
            while (kept.size() - first > 2 && isSpike(*(kept.end() - 2), kept.back(), next)) {
                cut(*(kept.end() - 2), kept.back(), next);
                kept.pop_back();
            }
        };
        for (unsigned corner = 0; corner < corners_.size(); ++corner) {
            dropLast(corner);
            kept.push_back(corner);
        }
        dropLast(kept[first]);
        while (kept.size() - first > 3 && isSpike(kept.back(), kept[first], kept[first + 1])) {
            cut(kept.back(), kept[first], kept[first + 1]);
            dropLast(kept[++first]);
        }
        kept.erase(kept.begin(), kept.begin() + std::ptrdiff_t(first));
        for (size_t at = 0; at < kept.size(); ++at) {
            behind_[kept[at]] = kept[(at + 1) % kept.size()];
            before_[kept[(at + 1) % kept.size()]] = kept[at];
        }
        return kept;
    }

    bool isBelow(unsigned a, unsigned b) const {
        const PlanePoint &p = corners_[a], &q = corners_[b];
        return p.y != q.y ? p.y < q.y : p.x != q.x ? p.x < q.x : a < b;
    }
    double turnAt(unsigned a, unsigned b, unsigned c) const {
        return turn(corners_[a], corners_[b], corners_[c]);
    }
    /// Whether the start of a side, or else its end, lies left of an interval's left side.
    bool isLeftOf(unsigned start, unsigned end, const Interval *interval) const {
        const double there = turnAt(interval->left, interval->leftUp, start);
        return (there != 0 ? there : turnAt(interval->left, interval->leftUp, end)) > 0;
    }

    void cut(unsigned a, unsigned b, unsigned c) { triangles_.push_back({a, b, c}); }

    void extendLeft(Interval &interval, unsigned corner) {
        Chain &chain = interval.chain;
        while (chain.size() > 1 && turnAt(chain.front(), *std::next(chain.begin()), corner) > 0) {
            const unsigned hidden = chain.front();
            chain.pop_front();
            cut(hidden, chain.front(), corner);
        }
        chain.push_front(corner);
        interval.latest = chain.begin();
    }

    void extendRight(Interval &interval, unsigned corner) {
        Chain &chain = interval.chain;
        while (chain.size() > 1 && turnAt(*std::prev(chain.end(), 2), chain.back(), corner) > 0) {
            const unsigned hidden = chain.back();
            chain.pop_back();
            cut(chain.back(), hidden, corner);
        }
        chain.push_back(corner);
        interval.latest = std::prev(chain.end());
    }

    void setLeft(Interval &interval, unsigned low, unsigned up) {
        interval.left = low;
        interval.leftUp = up;
        leftSideTo_[up] = &interval;
    }
    void setRight(Interval &interval, unsigned low, unsigned up) {
        interval.right = low;
        interval.rightUp = up;
        rightSideTo_[up] = &interval;
    }

    /// Moves the line over a corner; false where that fits no polygon. Sides that fall have the
    /// inside to their right, sides that rise to their left.
    bool pass(unsigned corner) {
        const unsigned before = before_[corner], behind = behind_[corner];
        const bool falls = isBelow(corner, before), rises = isBelow(corner, behind);
        const bool bulges = turnAt(before, corner, behind) > 0;
        if (falls && rises)
            return bulges ? start(corner, before, behind) : split(corner, before, behind);
        Interval *const rightOf = leftSideTo_[corner], *const leftOf = rightSideTo_[corner];
        if (!falls && !rises)
            return bulges ? finish(corner, rightOf, leftOf) : join(corner, rightOf, leftOf);
        Interval *const along = falls ? rightOf : leftOf;
        if (!along)
            return false;
        if (falls) {
            extendLeft(*along, corner);
            setLeft(*along, corner, before);
        } else {
            extendRight(*along, corner);
            setRight(*along, corner, behind);
        }
        return true;
    }

    bool start(unsigned corner, unsigned left, unsigned right) {
        Interval &interval = intervals_.emplace_back();
        interval.chain = {corner};
        interval.latest = interval.chain.begin();
        setLeft(interval, corner, left);
        setRight(interval, corner, right);
        return open_.insert(&interval).second;
    }

    bool finish(unsigned corner, Interval *rightOf, Interval *leftOf) {
        if (!rightOf || rightOf != leftOf)
            return false;
        const Chain &chain = rightOf->chain;
        for (auto at = chain.begin(); std::next(at) != chain.end(); ++at)
            cut(*at, *std::next(at), corner);
        return open_.erase(rightOf) == 1;
    }

    bool split(unsigned corner, unsigned before, unsigned behind) {
        const auto above = open_.upper_bound(corner);
        if (above == open_.begin())
            return false;
        Interval &left = **std::prev(above);
        Interval &right = intervals_.emplace_back();
        right.chain.push_back(*left.latest);
        right.chain.splice(right.chain.end(), left.chain, std::next(left.latest), left.chain.end());
        setRight(right, left.right, left.rightUp);
        setLeft(right, corner, before);
        setRight(left, corner, behind);
        extendRight(left, corner);
        extendLeft(right, corner);
        return open_.insert(&right).second;
    }

    bool join(unsigned corner, Interval *right, Interval *left) {
        if (!right || !left || right == left)
            return false;
        extendRight(*left, corner);
        extendLeft(*right, corner);
        right->chain.pop_front(); // the left one has it
        if (open_.erase(right) != 1)
            return false;
        left->chain.splice(left->chain.end(), right->chain);
        setRight(*left, right->right, right->rightUp);
        return true;
    }

    /// Whether the triangles cover the polygon, and nothing twice.
    bool isWhole() const {
        double area = 0, covered = 0;
        for (const auto &[a, b, c] : triangles_) {
            covered += std::abs(turnAt(a, b, c));
            area += turnAt(a, b, c);
        }
        double wanted = 0;
        for (unsigned at = 1; at + 1 < corners_.size(); ++at)
            wanted += turnAt(0, at, at + 1);
        return triangles_.size() + 2 == corners_.size() &&
               std::abs(covered - wanted) <= 1e-9 * std::abs(wanted) &&
               covered - area <= 1e-9 * wanted;
    }

    std::span<const PlanePoint> corners_;
    std::list<Interval> intervals_; // those that are open, and those that were
    Open open_;
    std::vector<unsigned> before_, behind_;            // each corner's neighbours
    std::vector<Interval *> leftSideTo_, rightSideTo_; // by the sides' upper ends
    std::vector<std::array<unsigned, 3>> triangles_;
};

} // namespace

std::vector<std::array<unsigned, 3>> sweepPolygon(std::span<const PlanePoint> corners) {
    return Sweep(corners).run();
}

} // namespace devhost
