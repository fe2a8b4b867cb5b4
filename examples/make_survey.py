#!/usr/bin/env python3
"""make_survey.py - writes the sample survey: PREFIX.csv and its dictionary PREFIX.dict.json.

The data are synthetic but built with realistic relationships, so tables show something:
younger respondents use web and social media more, older ones television and print; the
score rises with age group; income rises with age up to the middle groups; satisfaction
(q1..q5) leans on region. Cases come sorted by wave, so `--split wave` gives four groups.

Usage: make_survey.py [--cases N] [--out PREFIX] [--seed S]
Only the Python standard library is used; the same seed always gives the same files.
"""

import argparse
import csv
import json
import math
import random

REGIONS = ["North", "North East", "East", "South East", "South", "South West", "West", "Central"]
AGE_GROUPS = ["18-24", "25-34", "35-44", "45-54", "55-64", "65 or older"]
WAVES = ["Spring", "Summer", "Autumn", "Winter"]
LIKERT = {"1": "Very dissatisfied", "2": "Dissatisfied", "3": "Neutral", "4": "Satisfied",
          "5": "Very satisfied", "9": "No answer"}
QUESTIONS = ["Overall service", "Value for money", "Staff friendliness", "Waiting time", "Website"]
MEDIA = [("tv", "Television"), ("radio", "Radio"), ("web", "Websites"), ("print", "Newspapers and magazines"),
         ("social", "Social media")]
BRANDS = ["Acme", "Borealis", "Corvid", "Dunmore", "Elstree", "Fenwick"]


def clamp(value, low, high):
    return max(low, min(high, value))


def logistic(x):
    return 1.0 / (1.0 + math.exp(-x))


def make_case(rng, case_id, wave):
    region = rng.randint(1, 8)
    gender = rng.randint(1, 2)
    # A slightly older sample than the population, as phone surveys tend to be.
    agegrp = rng.choices(range(1, 7), weights=[12, 16, 18, 19, 18, 17])[0]
    age_centered = (agegrp - 3.5) / 2.5  # about -1 for the youngest, +1 for the oldest

    row = {"id": case_id, "region": region, "gender": gender, "agegrp": agegrp, "wave": wave}

    # Satisfaction leans on region (the south-east happier, the north less so) and a person's mood.
    region_effect = [-0.5, -0.3, 0.0, 0.4, 0.3, 0.1, 0.0, -0.1][region - 1]
    mood = rng.gauss(0, 0.8)
    for number in range(1, 6):
        roll = rng.random()
        if roll < 0.03:
            row[f"q{number}"] = ""  # not asked
        elif roll < 0.07:
            row[f"q{number}"] = 9  # no answer: user-missing
        else:
            value = 3.2 + region_effect + mood + rng.gauss(0, 0.9)
            row[f"q{number}"] = int(clamp(round(value), 1, 5))

    # Media use by age: web and social fall with age, television and print rise.
    media_logits = {"tv": 0.6 + 0.9 * age_centered, "radio": -0.2 + 0.3 * age_centered,
                    "web": 0.9 - 1.2 * age_centered, "print": -0.8 + 1.1 * age_centered,
                    "social": 0.4 - 1.8 * age_centered}
    for name, _ in MEDIA:
        row[name] = 1 if rng.random() < logistic(media_logits[name]) else 0

    # Up to three brands bought, distinct; Acme leads among the young and Dunmore among the old.
    brand_weights = [clamp(w, 0.2, 10) for w in
                     [4 - 1.5 * age_centered, 3, 2.5, 2 + 1.5 * age_centered, 1.5, 1]]
    mentions = 1 + (rng.random() < 0.55) + (rng.random() < 0.3)
    if rng.random() < 0.05:
        mentions = 0
    chosen = []
    while len(chosen) < mentions:
        brand = rng.choices(range(1, 7), weights=brand_weights)[0]
        if brand not in chosen:
            chosen.append(brand)
    for slot in range(3):
        row[f"b{slot + 1}"] = chosen[slot] if slot < len(chosen) else ""

    row["score"] = round(clamp(rng.gauss(45 + 6 * (agegrp - 1), 14), 0, 100), 1)

    if rng.random() < 0.12:
        row["income"] = ""  # refused
    else:
        peak = 1 - ((agegrp - 4) / 3.5) ** 2
        row["income"] = int(round(clamp(rng.lognormvariate(math.log(28000 + 22000 * peak), 0.45), 6000, 400000), -2))

    # Design weight: mean about 1, a few zero for cases outside the target population.
    row["wt"] = 0.0 if rng.random() < 0.01 else round(clamp(rng.lognormvariate(-0.08, 0.4), 0.2, 4.0), 3)
    return row


def dictionary():
    def labels(names):
        return {str(code): name for code, name in enumerate(names, start=1)}

    variables = [
        {"name": "id", "label": "Respondent number", "type": "numeric", "format": "F6.0", "measure": "scale"},
        {"name": "region", "label": "Region of residence", "format": "F1.0", "measure": "nominal",
         "values": labels(REGIONS)},
        {"name": "gender", "label": "Gender", "format": "F1.0", "measure": "nominal",
         "values": {"1": "Male", "2": "Female"}},
        {"name": "agegrp", "label": "Age group", "format": "F1.0", "measure": "ordinal", "values": labels(AGE_GROUPS)},
        {"name": "wave", "label": "Survey wave", "format": "F1.0", "measure": "ordinal", "values": labels(WAVES)},
    ]
    for number, question in enumerate(QUESTIONS, start=1):
        variables.append({"name": f"q{number}", "label": f"Satisfaction: {question}", "format": "F1.0",
                          "measure": "ordinal", "values": LIKERT, "missing": {"values": [9]}})
    for name, label in MEDIA:
        variables.append({"name": name, "label": label, "format": "F1.0", "measure": "nominal",
                          "values": {"0": "Not used", "1": "Used"}})
    for slot, word in enumerate(["First", "Second", "Third"], start=1):
        variables.append({"name": f"b{slot}", "label": f"{word} brand bought", "format": "F1.0",
                          "measure": "nominal", "values": labels(BRANDS)})
    variables += [
        {"name": "score", "label": "Knowledge score", "format": "F5.1", "measure": "scale"},
        {"name": "income", "label": "Household income", "format": "DOLLAR9.0", "measure": "scale"},
        {"name": "wt", "label": "Design weight", "format": "F6.3", "measure": "scale"},
    ]
    return {
        "variables": variables,
        "mrsets": [
            {"name": "$media", "label": "Media used in the last week", "type": "dichotomies", "counted": 1,
             "variables": [name for name, _ in MEDIA], "labels": "varlabels"},
            {"name": "$brands", "label": "Brands bought", "type": "categories", "variables": ["b1", "b2", "b3"]},
        ],
    }


def main():
    parser = argparse.ArgumentParser(description="Writes the sample survey and its dictionary.")
    parser.add_argument("--cases", type=int, default=2000, help="number of cases (default 2000)")
    parser.add_argument("--out", default="survey", help="path prefix of the two files (default: survey)")
    parser.add_argument("--seed", type=int, default=20240611, help="random seed (default fixed)")
    args = parser.parse_args()
    if args.cases < 0:
        parser.error("--cases must not be negative")

    rng = random.Random(args.seed)
    columns = (["id", "region", "gender", "agegrp", "wave"] + [f"q{n}" for n in range(1, 6)] +
               [name for name, _ in MEDIA] + ["b1", "b2", "b3", "score", "income", "wt"])
    with open(args.out + ".csv", "w", newline="", encoding="utf-8") as stream:
        writer = csv.DictWriter(stream, fieldnames=columns, lineterminator="\n")
        writer.writeheader()
        case_id = 0
        for wave in range(1, 5):
            # Waves differ a little in size, as fieldwork does.
            count = args.cases // 4 + (1 if wave <= args.cases % 4 else 0)
            for _ in range(count):
                case_id += 1
                writer.writerow(make_case(rng, case_id, wave))
    with open(args.out + ".dict.json", "w", encoding="utf-8") as stream:
        json.dump(dictionary(), stream, indent=2, ensure_ascii=False)
        stream.write("\n")


if __name__ == "__main__":
    main()
