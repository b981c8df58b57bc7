import assert from 'node:assert/strict';
import { afterEach, beforeEach, describe, it } from 'node:test';
import { heading, row, shown } from './browser.mjs';
import { varied } from './data.mjs';

let page;
let complaints;
beforeEach(async () => {
    ({ page, complaints } = await shown('varied', varied()));
    await page.click('#expand');
});
afterEach(() => assert.deepEqual(complaints, []));

const texts = (selector) => page.locator('#panel ' + selector).allTextContents();
const choose = (name) => row(page, name).click();

describe('a value', () => {
    it('that is one number stands alone, with its unit', async () => {
        await choose('Density');
        assert.equal(await page.locator('.value-now').textContent(), '7850 KilogramPerCubicMeter');
    });

    it('that is an array is a plot and a table, a part at a time', async () => {
        await choose('strain');
        assert.equal(await page.locator('.plot svg').getAttribute('aria-label'), 'Plot of 250 values from 0 to 0.249');
        assert.equal((await texts('tbody tr')).length, 100);
        await page.click('.more');
        assert.equal((await texts('tbody tr')).length, 200);
        await page.click('.more');
        assert.equal((await texts('tbody tr')).length, 250);
        assert.equal(await page.locator('.more').count(), 0);
    });

    it('that is cut says so, with the real number', async () => {
        await choose('wave');
        assert.match(await page.locator('.say').textContent(), /first 250 elements of 123,456: made with --all/);
        assert.match(await page.locator('.facts').textContent(), /Elements123,456/);
    });

    it('of vectors has a column for each component', async () => {
        await choose('outline');
        assert.deepEqual(await texts('th'), ['#', 'x (Meter)', 'y (Meter)']);
        assert.deepEqual(await texts('tbody tr:nth-child(3) td'), ['2', '4', '3']);
    });

    it('that is a matrix stands as its rows', async () => {
        await choose('turn');
        assert.deepEqual(await texts('tr:nth-child(1) td'), ['0', '-1', '0']);
    });

    it('of bytes is shown in hexadecimal digits and as characters', async () => {
        await choose('bytes');
        assert.match((await texts('pre'))[0], /^000000 {2}48 65 6c 6c 6f 00 ff +Hello\.\.$/);
    });

    it('that is a long text is cut, with a button for all of it', async () => {
        await choose('story');
        assert.equal((await texts('pre'))[0].length, 2001);
        await page.click('text=Show all (8,800 characters)');
        assert.equal((await texts('pre'))[0].length, 8800);
    });

    it('of texts shows each by itself, with its lines', async () => {
        await choose('list');
        assert.deepEqual(await texts('pre'), ['one', 'two', '']);
        await choose('Note');
        assert.deepEqual(await texts('pre'), ['plain\nin two lines']);
    });

    it('of structs has a column for each field', async () => {
        await choose('poses');
        assert.deepEqual(await texts('th'), ['#', 'position', 'time']);
        assert.deepEqual(await texts('tbody tr:nth-child(2) td'), ['1', '0.25, 0, 0.5', '400']);
    });

    it('that stands elsewhere is told by its URI', async () => {
        await choose('elsewhere');
        assert.match(await page.locator('.facts').textContent(), /Value athttps:\/\/example\.org\/values/);
        assert.equal(await page.locator('a').count(), 0);
    });

    it('without elements says so', async () => {
        await choose('empty');
        assert.match(await page.locator('#panel').textContent(), /No elements/);
    });
});

describe('a set', () => {
    it('lists what it holds, each leading there', async () => {
        await choose('Curves');
        assert.equal((await texts('table.wide tbody tr')).length, 12);
        await page.click('#panel .go >> text=closed');
        assert.equal(await heading(page), 'closed');
    });

    it('that holds arrays shows them as columns', async () => {
        await choose('Stress');
        const columns = 'h3:text("Columns") + .grid ';
        assert.deepEqual(await texts(columns + 'th'), ['#', 'strain', 'stress (MegaPascal)']);
        assert.deepEqual(await texts(columns + 'tbody tr:nth-child(3) td'), ['2', '0.002', '24']);
    });

    it('that holds sets of the same values compares them', async () => {
        await choose('Metals');
        assert.match(await page.locator('#panel').textContent(), /Side by side/);
        assert.deepEqual(await texts('th[scope="row"]'), ['Steel', 'Brass', 'en-us', 'de-de']);
        assert.deepEqual(await texts('td.end'), ['7850', '8500']);
    });

    it('tells its names in all languages', async () => {
        await choose('Steel');
        assert.match(await page.locator('#panel').textContent(), /de-deStahlen-usStructural steel/);
    });

    it('tells the defaults of its units', async () => {
        await choose('Mechanical');
        assert.match(await page.locator('.facts').textContent(), /Defaultdouble in KilogramPerCubicMeter/);
    });
});

describe('schemas and findings', () => {
    it('tell which items inherit from which schema', async () => {
        await page.click('#tab-schemas');
        const sections = await texts('section');
        assert.deepEqual(sections, ['MechanicalMetals.SteelMetals.Brass',
            'Thermal (not among the schemas that were given)Metals.Steel',
            'Pose (not among the schemas that were given)Curves.poses']);
    });

    it('tell what does not conform, and lead there', async () => {
        await page.click('#tab-schemas');
        assert.match((await texts('.found'))[0], /Metals\.BrassMechanical: 'PoissonRatio' \(double\) is missing/);
        await page.click('.found .go');
        assert.equal(await heading(page), 'Brass');
        assert.match(await page.locator('.chips').textContent(), /does not conform to Mechanical/);
        await choose('Steel');
        assert.match(await page.locator('.chips').textContent(), /nodeconforms to Mechanical;Thermal/);
    });

    it('say when nobody has looked whether items conform', async () => {
        const data = varied();
        data.json.schemas = data.json.conformance = null;
        const other = await shown('unlooked', data);
        await other.page.click('#tab-schemas');
        assert.match(await other.page.locator('#panel').textContent(), /made without --schemas/);
        assert.deepEqual(other.complaints, []);
    });

    it('tell the findings of the checker, which lead to their items', async () => {
        await page.click('#tab-findings');
        assert.deepEqual(await texts('.found'), [
            'staleMetals.Brassit is counted as open 2 timeslive.count; a repair: the count becomes 0',
            'note1 × live.unattachednothing reaches the record']);
        await page.click('.found .go');
        assert.equal(await heading(page), 'Brass');
        assert.match(await page.locator('#panel').textContent(), /What is amiss/);
    });

    it('mark the items in the tree', async () => {
        assert.equal(await row(page, 'Brass').locator('.dot.stale').count(), 1);
        assert.equal(await page.locator('#tree .dot').count(), 1);
    });
});

it('tells what is in the page and that it is all of the data', async () => {
    await page.click('#tab-about');
    assert.match(await page.locator('#panel').textContent(), /who gets the page gets the data/);
    assert.match(await page.locator('#panel').textContent(), /at most 10,000 elements/);
});
