#include "borealis/config/doc4410.h"

Doc4410::Doc4410() : ConfigurableComposite("norvance"), vela("vela") { add_child(&vela); }
