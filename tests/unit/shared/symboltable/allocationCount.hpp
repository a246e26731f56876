#pragma once

/// How many objects made with `new` are alive in this process; the test program replaces the
/// operators to count them.
long liveObjects();
