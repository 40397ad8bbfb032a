#pragma once

#include <gmock/gmock.h>

namespace vemra {

// What tests match with, in all of them.
using testing::AllOf;
using testing::AnyOf;
using testing::Contains;
using testing::DoubleNear;
using testing::Each;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::EndsWith;
using testing::Eq;
using testing::Ge;
using testing::Gt;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::IsSupersetOf;
using testing::Le;
using testing::Lt;
using testing::MatchesRegex;
using testing::Ne;
using testing::Not;
using testing::Optional;
using testing::Pair;
using testing::SizeIs;
using testing::StartsWith;
using testing::ThrowsMessage;
using testing::UnorderedElementsAre;
using testing::UnorderedElementsAreArray;

}  // namespace vemra
