#include "SimpleAction.hpp"

namespace Korvel {

SimpleAction::~SimpleAction() = default;

}  // namespace Korvel
