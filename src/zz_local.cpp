namespace { [[maybe_unused]] int nothing; }
