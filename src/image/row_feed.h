// Work that must reach a row before an effect reads it: an effect that goes
// up the picture asks for rows as it comes to them, while they are in the
// cache, instead of the work running over the whole picture first.
#pragma once

namespace brindle {

class RowFeed {
  public:
    virtual ~RowFeed() = default;
    // Rows 0 .. row (at most the last row) have had the work once.
    virtual void upTo(int row) = 0;
};

}  // namespace brindle
