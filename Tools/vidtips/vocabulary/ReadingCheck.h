#pragma once

class Content;
class Findings;

/** Compares what user interfaces read of tips with the schemas beside them. */
namespace ReadingCheck {

void run(const Content &content, Findings &findings);

} // namespace ReadingCheck
