if (true) { } ]
