#include "brvUtils/core/ValuePtr.h"

#include <gtest/gtest.h>

namespace brvUtils {
namespace {

struct Shape {
    explicit Shape(int initialSize) : size(initialSize) { ++alive; }
    Shape(const Shape& other) : size(other.size) { ++alive; }
    virtual ~Shape() { --alive; }
    virtual Shape* clone() const { return new Shape(*this); }
    virtual int corners() const { return 0; }
    int size;
    static inline int alive = 0;
};

struct Square : Shape {
    using Shape::Shape;
    Shape* clone() const override { return new Square(*this); }
    int corners() const override { return 4; }
};

TEST(ValuePtr, CopiesThePointeeAndOwnsIt)
{
    {
        const ValuePtr<Shape> first(new Square(1));
        ValuePtr<Shape> second = first;
        second->size = 2;
        EXPECT_EQ(first->size, 1);
        EXPECT_EQ((*second).corners(), 4) << "cloned as what it is";
        ValuePtr<Shape>& same = second;
        second = same;
        EXPECT_EQ(second->size, 2);
        second = first;
        EXPECT_EQ(second->size, 1);
        const ValuePtr<Shape> third = std::move(second);
        EXPECT_EQ(third->size, 1);
        const ValuePtr<Shape> none;
        second = none;
        EXPECT_FALSE(second);
        EXPECT_EQ(Shape::alive, 2);
    }
    EXPECT_EQ(Shape::alive, 0);
}

} // namespace
} // namespace brvUtils
