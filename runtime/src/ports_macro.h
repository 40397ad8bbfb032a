#pragma once

/// Defines the ports that a built-in class declares to the factory.
#define BT_PORTS(Class, ...) /* NOLINT(cppcoreguidelines-macro-usage) */ \
    const NodeParameters& Class::requiredNodeParameters()                \
    {                                                                    \
        static const NodeParameters kPorts{__VA_ARGS__};                 \
        return kPorts;                                                   \
    }
