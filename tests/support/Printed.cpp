#include "Printed.hpp"

#include "OutputCapture.hpp"

std::ostream& operator<<(std::ostream& stream, const Printed& printed) {
    return stream << "standard output:\n" << printed.out << "standard error:\n" << printed.err;
}

Printed printedBy(const std::function<void()>& work) {
    OutputCapture capture;
    work();
    return {capture.out(), capture.err()};
}
